#include "ModuleCopy.h"

#include "Module.h"

namespace module_test {

ModuleCopy::ModuleCopy(const std::wstring& folder) : folder_(folder) {
  std::filesystem::copy_file(built_module_path(), path());
}

}  // namespace module_test
