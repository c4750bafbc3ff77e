#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace SnagtrapUtil {

/// What a report says. The kind decides the kind of the record and what its text is.
enum class ReportKind {
  assertion,    ///< a check failed; the text is the checked expression
  failed_call,  ///< a call failed: an assertion that carries an HRESULT and no text
  trace,        ///< an exception was caught; the text describes it in the format of its type
  error,  ///< an exception was caught where every failure returns E_FAIL; the text is that of a standard exception
};

/// A report that support staff know by its file and line.
struct FixedReport {
  const char* file = "";  ///< file name with extension, without folder
  int line = 0;           ///< 1-based
  ReportKind kind = ReportKind::assertion;
  const wchar_t* expression = L"";  ///< the text of an assertion
};

/// Every report whose file and line never change. Both appear in reports, and support staff search for them; so a row
/// keeps its file when the check moves to another source and its line when the code around the check moves. For the
/// same reason names that appear in reports stay as they are, misspelt ones such as `resourse_2_string_impl` included.
/// docs/reports.md says of each row what it means and what to do.
inline constexpr FixedReport fixed_reports[] = {
    {"zdExpirationRulePlugin.cpp", 70, ReportKind::assertion, L"pMainMenu != 0"},
    {"zdExpirationRulePlugin.cpp", 71, ReportKind::assertion, L"MainControlBar != 0"},
    {"zdExpirationRulePlugin.cpp", 72, ReportKind::assertion, L"PortfolioContextMenu != 0"},
    {"zdExpirationRulePlugin.cpp", 73, ReportKind::assertion, L"PortfolioHotKeys != 0"},
    {"zdExpirationRulePlugin.cpp", 84, ReportKind::error},
    {"zdExpirationRulePlugin.cpp", 107, ReportKind::error},
    {"zdExpirationRulePlugin.cpp", 121, ReportKind::trace},
    {"zdExpirationRulePlugin.cpp", 136, ReportKind::failed_call},
    {"zdExpirationRulePlugin.cpp", 144, ReportKind::failed_call},
    {"zdExpirationRulePlugin.cpp", 150, ReportKind::failed_call},
    {"zdExpirationRulePlugin.cpp", 160, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 21, ReportKind::assertion, L"field != 0"},
    {"zdStorageGetFieldHelper.h", 22, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 26, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 37, ReportKind::assertion, L"field != 0"},
    {"zdStorageGetFieldHelper.h", 38, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 42, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 210, ReportKind::failed_call},
    {"zdStorageGetFieldHelper.h", 212, ReportKind::failed_call},
    {"ExpirationRulesListDialog.h", 51, ReportKind::assertion, L"0"},
    {"ExpirationRulesListDialog.cpp", 123, ReportKind::trace},
    {"ExpirationRulesListDialog.cpp", 139, ReportKind::failed_call},
    {"ExpirationRulesListDialog.cpp", 142, ReportKind::failed_call},
    {"ExpirationRulesListDialog.cpp", 145, ReportKind::failed_call},
    {"ExpirationRulesListDialog.cpp", 154, ReportKind::trace},
    {"ExpirationRulesListDialog.cpp", 165, ReportKind::failed_call},
    {"ExpirationRulesListDialog.cpp", 175, ReportKind::trace},
    {"ExpirationRulesListDialog.cpp", 220, ReportKind::assertion, L"isOk"},
    {"RegistryHelper.h", 15, ReportKind::failed_call},
    {"ResizableDialog.h", 48, ReportKind::assertion, L"0"},
    {"ResizableGrip.h", 117, ReportKind::assertion, L"0"},
    {"ResizableLayout.h", 271, ReportKind::assertion, L"::IsWindow(hWnd)"},
    {"ResizableLayout.h", 273, ReportKind::assertion, L"::IsChild(pT->m_hWnd, hWnd)"},
    {"ResizableLayout.h", 275, ReportKind::assertion, L"anchorTL != NOANCHOR"},
    {"ResizableLayout.h", 469, ReportKind::assertion, L"0"},
    {"ResizableMinMax.h", 130, ReportKind::assertion, L"0"},
    {"ResizableMsgSupport.h", 48, ReportKind::assertion, L"uRegisterdWMU_RESIZESUPPORT != 0"},
};

/// The index of the row with this file and line. Constant expressions only: a pair without a row does not compile.
constexpr std::size_t fixed_report_row(std::string_view file, int line) {
  std::size_t row = 0;
  for (const FixedReport& report : fixed_reports) {
    if (report.line == line && report.file == file) return row;
    ++row;
  }
  throw std::logic_error("fixed_reports has no row of this file and line");
}

}  // namespace SnagtrapUtil
