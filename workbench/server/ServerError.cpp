#include "ServerError.h"

#include <string_view>
#include <utility>

namespace workbench {

namespace {

using Kind = StoreErrorKind;

/// States with their kinds. A state of two characters stands for its class where the state itself has no row.
constexpr std::pair<std::string_view, Kind> kinds_of_states[] = {
    {"08", Kind::connection_lost},   {"08001", Kind::unreachable},
    {"08004", Kind::unreachable},    {"22", Kind::invalid_value},
    {"23", Kind::invalid_value},     {"23503", Kind::in_use},
    {"23505", Kind::duplicate_name}, {"25006", Kind::read_only},
    {"28", Kind::login_refused},     {"40", Kind::locked},
    {"42501", Kind::read_only},      {"53", Kind::overloaded},
    {"53100", Kind::full},           {"55P03", Kind::locked},
    {"57", Kind::connection_lost},   {"57014", Kind::locked},
    {"58", Kind::unavailable},       {"HYT", Kind::connection_lost},
    {"IM002", Kind::no_driver},      {"IM003", Kind::no_driver},
    {"01000", Kind::no_driver},      {"01004", Kind::damaged},
    {"XX001", Kind::damaged},        {"XX002", Kind::damaged},
    {"22002", Kind::damaged},  // the tables have no null where one was read
    {"42703", Kind::damaged},        {"42P01", Kind::damaged},
};

}  // namespace

StoreErrorKind server_error_kind(const std::string& state) noexcept {
  for (const std::size_t length : {5, 3, 2})
    for (const auto& [known, kind] : kinds_of_states)
      if (known.size() == length && state.starts_with(known)) return kind;
  return Kind::unavailable;
}

bool keeps_connection(StoreErrorKind kind) noexcept {
  switch (kind) {
    case Kind::read_only:
    case Kind::locked:
    case Kind::full:
    case Kind::invalid_value:
    case Kind::duplicate_name:
    case Kind::in_use:
      return true;
    default:
      return false;
  }
}

}  // namespace workbench
