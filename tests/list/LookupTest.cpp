#include "LookupTest.h"

#include <cstdio>

namespace list_test {
namespace {

std::string hexadecimal(HRESULT hresult, const char* format) {
  char text[16] = {};
  std::snprintf(text, sizeof text, format, static_cast<unsigned long>(hresult));
  return text;
}

std::string location_text(const char* function, int line) {
  return " | ExpirationRulesListDialog.cpp:" + std::to_string(line) + ' ' + function;
}

}  // namespace

std::string caught(const char* function, int line, HRESULT hresult) {
  return "TRACE HRESULT - " + hexadecimal(hresult, "%lx") + "; FILE - ExpirationRulesListDialog.cpp, LINE - " +
         std::to_string(line) + location_text(function, line);
}

std::string failed(const char* function, int line, HRESULT hresult) {
  return "ASSERT " + hexadecimal(hresult, "%08lx") + location_text(function, line);
}

}  // namespace list_test
