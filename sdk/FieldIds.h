#pragma once

/// Identifies one column of a host table. The host passes these numbers as 32-bit integers.
enum tagKVFIELDID : long {
  KVFIELD_SETTING_NAME = 209,  ///< symbol source settings: the setting's own name, text
  KVFIELD_RULE_ID = 1025,      ///< expiration rules: the rule number, greater than 0 once stored
  KVFIELD_RULE_NAME = 1077,    ///< expiration rules and symbol source settings: the rule's name, text
  KVFIELD_ROLL_OFFSET = 1078,
  KVFIELD_DAY_TYPE = 1079,
  KVFIELD_DAY_MODE = 1080,
  KVFIELD_DAY_OF_MONTH = 1081,
  KVFIELD_DAY_MONTH = 1082,
  KVFIELD_WEEK_ORDINAL = 1083,
  KVFIELD_WEEKDAY = 1084,
  KVFIELD_WEEKDAY_MONTH = 1085,
  KVFIELD_MOVE_TO_NEXT_TRADING_DAY = 1160,
};
