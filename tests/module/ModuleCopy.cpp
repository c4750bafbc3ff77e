#include "ModuleCopy.h"

#include "Module.h"

namespace module_test {

ModuleCopy::ModuleCopy(const std::wstring& folder)
    : folder_(std::filesystem::temp_directory_path() / (folder + std::to_wstring(GetCurrentProcessId()))) {
  std::filesystem::create_directories(folder_);
  std::filesystem::copy_file(built_module_path(), path(), std::filesystem::copy_options::overwrite_existing);
}

ModuleCopy::~ModuleCopy() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace module_test
