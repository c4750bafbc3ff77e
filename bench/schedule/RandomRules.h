#pragma once

#include <random>
#include <vector>

#include "RuleNumbers.h"

/// Rules of which every number lies in its range.
inline std::vector<workbench::schedule::RuleNumbers> random_rules(std::size_t count, std::mt19937& random) {
  std::vector<workbench::schedule::RuleNumbers> rules(count);
  for (workbench::schedule::RuleNumbers& rule : rules)
    for (const workbench::schedule::RuleField& field : workbench::schedule::rule_fields)
      rule.*field.value = std::uniform_int_distribution<std::int32_t>(field.least, field.greatest)(random);
  return rules;
}
