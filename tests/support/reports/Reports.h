#pragma once

#include <string>
#include <vector>

#include "Recorder.h"

namespace test_support {

/// What has reached the recorder with "PROCESS", one text a report, in order:
///   `ASSERT field != 0 | zdStorageGetFieldHelper.h:21 GetField`
///   `ASSERT 80004005 | zdStorageGetFieldHelper.h:22 GetField` for an assertion that carries an HRESULT and no text
///   `TRACE HRESULT - 80004005; FILE - Some.cpp, LINE - 7 | Some.cpp:7 some_function`
/// Kinds are those of "$Type". Texts are UTF-8.
std::vector<std::string> reports(const Recorder& recorder);

/// As `reports`, with every line number replaced by "*": for locations whose line is not fixed.
std::vector<std::string> reports_without_lines(const Recorder& recorder);

}  // namespace test_support
