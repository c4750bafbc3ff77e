#pragma once

#include <chrono>
#include <set>

#include "RuleRecord.h"

/// The trading days of an exchange: every Monday to Friday that is no holiday.
using Holidays = std::set<std::chrono::sys_days>;

/// The day on which a contract of this month ends under this rule.
std::chrono::year_month_day expiration_day(const workbench::Rule& rule, std::chrono::year_month contract,
                                           const Holidays& holidays);
