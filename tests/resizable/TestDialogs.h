#pragma once

/* Read by the tests and by the resource compiler alike: plain numbers only. */

#define IDD_SIZING_BORDER 301
#define IDD_MODAL_FRAME 302
#define IDD_CHILD 303
#define IDD_EMPTY 304

#define IDC_GROUP 401
#define IDC_LIST 402
#define IDC_ADD 403
#define IDC_NEVER_ANCHORED 404
