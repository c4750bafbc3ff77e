#include "Clipboard.h"

#include <cstring>

#include "Owned.h"

namespace workbench {

namespace {

using GlobalMemory = base::OwnedBy<HGLOBAL, &GlobalFree>;

/// Holds the clipboard open for a scope.
class ScopedClipboard {
 public:
  explicit ScopedClipboard(HWND owner) noexcept : open_(OpenClipboard(owner) != 0) {}
  ~ScopedClipboard() {
    if (open_) CloseClipboard();
  }
  ScopedClipboard(const ScopedClipboard&) = delete;
  ScopedClipboard& operator=(const ScopedClipboard&) = delete;

  explicit operator bool() const noexcept { return open_; }

 private:
  bool open_;
};

}  // namespace

bool try_copy(HWND owner, const std::wstring& text) {
  const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, bytes));
  void* target = memory ? GlobalLock(memory.get()) : nullptr;
  if (!target) return false;
  std::memcpy(target, text.c_str(), bytes);
  GlobalUnlock(memory.get());
  const ScopedClipboard clipboard(owner);
  if (!clipboard || !EmptyClipboard() || !SetClipboardData(CF_UNICODETEXT, memory.get())) return false;
  memory.detach();  // it belongs to the clipboard now
  return true;
}

}  // namespace workbench
