#pragma once

/* Read by the code and by the resource compiler alike: plain numbers only. */

/* custom resources of type "REGISTRY" */
#define IDR_APPID 101
#define IDR_EXPIRATION_RULE_PLUGIN 102

/* dialogs */
#define IDD_EXPIRATION_RULES_LIST 201
#define IDD_EDIT_EXPIRATION_RULE 202

/* controls of the list dialog */
#define IDC_RULES_LIST 201
#define IDC_ADD_RULE 202
#define IDC_EDIT_RULE 203
#define IDC_DELETE_RULE 204
#define IDC_RULES_GROUP 205

/* controls of the editor */
#define IDC_NAME_LABEL 206
#define IDC_NAME 207
#define IDC_DESCRIPTION_GROUP 208
#define IDC_OFFSET_LABEL 209
#define IDC_OFFSET 210
#define IDC_OFFSET_SPIN 211
#define IDC_DAY_TYPE 212
#define IDC_OFFSET_SUFFIX 213
#define IDC_DAY_LABEL 214
#define IDC_DAY_OF_MONTH_MODE 215
#define IDC_WEEKDAY_MODE 216
#define IDC_DAY_OF_MONTH 217
#define IDC_WEEK_ORDINAL 218
#define IDC_DAY_SUFFIX 219
#define IDC_DAY_MONTH 220
#define IDC_WEEKDAY 221
#define IDC_WEEKDAY_MONTH 222
#define IDC_WEEKDAY_SUFFIX 223
#define IDC_DESCRIPTION 224
#define IDC_MOVE_TO_NEXT_TRADING_DAY 225

/* strings */
#define IDS_PROJECT_NAME 100
#define IDS_NAME_COLUMN 101
#define IDS_RULE_IN_USE 102
#define IDS_CAPTION 103
#define IDS_CONFIRM_DELETE 104
#define IDS_EDIT_RULE_TITLE 105
#define IDS_ADD_RULE_TITLE 106
#define IDS_NEW_RULE_NAME 107
#define IDS_TRADING_DAYS 108
#define IDS_CALENDAR_DAYS 109
#define IDS_FIRST_DAY 110 /* 110 to 140: "first" to "thirty-first" */
#define IDS_PREVIOUS_MONTH 141
#define IDS_CURRENT_MONTH 142
#define IDS_NEXT_MONTH 143
#define IDS_SUNDAY 144 /* 144 to 150: Sunday to Saturday */
#define IDS_NAME_BAD_CHARACTER 151
#define IDS_NAME_EMPTY 152
#define IDS_NAME_NOT_UNIQUE 153
#define IDS_LAST_OCCURRENCE 154
#define IDS_CLOSING_OR 155
#define IDS_CLOSING_PREVIOUS 156
#define IDS_CLOSING_NEXT 157
#define IDS_CLOSING_TRADING_DAY 158
