#include "FaultyFileSystem.h"

#include <new>

namespace {

using test_support::FaultDuration;

/// Which calls count and fail.
enum class Kind { any, write, lock };

Kind faulted = Kind::any;
test_support::FaultCounter counter;
sqlite3_vfs* real_vfs = nullptr;
sqlite3_vfs faulty_vfs;

/// Counts a call of this kind and returns whether it fails.
bool fails(Kind kind = Kind::any) { return (faulted == Kind::any || faulted == kind) && counter.next_call_fails(); }

void fail_at(Kind kind, std::size_t number, FaultDuration duration) {
  faulted = kind;
  counter.arm(number, duration);
}

/// A file of ours, with the real one behind it in the same memory.
struct FaultyFile : sqlite3_file {
  sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

// SQLite hands out what the file system opened.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast)
sqlite3_file* real(sqlite3_file* file) { return static_cast<FaultyFile*>(file)->real(); }

int close(sqlite3_file* file) { return real(file)->pMethods->xClose(real(file)); }

int read(sqlite3_file* file, void* buffer, int size, sqlite3_int64 offset) {
  return fails() ? SQLITE_IOERR_READ : real(file)->pMethods->xRead(real(file), buffer, size, offset);
}

int write(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 offset) {
  if (fails(Kind::write)) return faulted == Kind::write ? SQLITE_FULL : SQLITE_IOERR_WRITE;
  return real(file)->pMethods->xWrite(real(file), buffer, size, offset);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  return fails() ? SQLITE_IOERR_TRUNCATE : real(file)->pMethods->xTruncate(real(file), size);
}

int sync(sqlite3_file* file, int flags) {
  return fails() ? SQLITE_IOERR_FSYNC : real(file)->pMethods->xSync(real(file), flags);
}

int file_size(sqlite3_file* file, sqlite3_int64* size) {
  return fails() ? SQLITE_IOERR_FSTAT : real(file)->pMethods->xFileSize(real(file), size);
}

int lock(sqlite3_file* file, int level) {
  if (fails(Kind::lock)) return faulted == Kind::lock ? SQLITE_BUSY : SQLITE_IOERR_LOCK;
  return real(file)->pMethods->xLock(real(file), level);
}

int unlock(sqlite3_file* file, int level) { return real(file)->pMethods->xUnlock(real(file), level); }

int check_reserved(sqlite3_file* file, int* result) {
  return fails() ? SQLITE_IOERR_CHECKRESERVEDLOCK : real(file)->pMethods->xCheckReservedLock(real(file), result);
}

int control(sqlite3_file* file, int operation, void* argument) {
  return real(file)->pMethods->xFileControl(real(file), operation, argument);
}

int sector_size(sqlite3_file* file) { return real(file)->pMethods->xSectorSize(real(file)); }

int characteristics(sqlite3_file* file) { return real(file)->pMethods->xDeviceCharacteristics(real(file)); }

const sqlite3_io_methods methods{
    1,       close,          read,    write,       truncate,        sync,    file_size, lock,
    unlock,  check_reserved, control, sector_size, characteristics, nullptr, nullptr,   nullptr,
    nullptr, nullptr,        nullptr};

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* given_flags) {
  auto* faulty = new (file) FaultyFile;
  faulty->pMethods = nullptr;
  if (fails()) return SQLITE_CANTOPEN;
  const int code = real_vfs->xOpen(real_vfs, name, faulty->real(), flags, given_flags);
  if (code == SQLITE_OK) faulty->pMethods = &methods;
  return code;
}

int remove(sqlite3_vfs*, const char* name, int sync_folder) {
  return fails() ? SQLITE_IOERR_DELETE : real_vfs->xDelete(real_vfs, name, sync_folder);
}

int access(sqlite3_vfs*, const char* name, int flags, int* result) {
  return fails() ? SQLITE_IOERR_ACCESS : real_vfs->xAccess(real_vfs, name, flags, result);
}

}  // namespace

FaultyFileSystem::FaultyFileSystem() {
  real_vfs = sqlite3_vfs_find(nullptr);
  faulty_vfs = *real_vfs;
  faulty_vfs.zName = "faulty";
  faulty_vfs.szOsFile = real_vfs->szOsFile + static_cast<int>(sizeof(FaultyFile));
  faulty_vfs.xOpen = open;
  faulty_vfs.xDelete = remove;
  faulty_vfs.xAccess = access;
  sqlite3_vfs_register(&faulty_vfs, 1);
  clear_faults();
}

FaultyFileSystem::~FaultyFileSystem() {
  sqlite3_vfs_unregister(&faulty_vfs);
  sqlite3_vfs_register(real_vfs, 1);
}

void FaultyFileSystem::break_call(std::size_t number, FaultDuration duration) { fail_at(Kind::any, number, duration); }

void FaultyFileSystem::fill_at_write(std::size_t number) { fail_at(Kind::write, number, FaultDuration::lasting); }

void FaultyFileSystem::hold_at_lock(std::size_t number) { fail_at(Kind::lock, number, FaultDuration::once); }

void FaultyFileSystem::clear_faults() { counter.clear_faults(); }

bool FaultyFileSystem::has_failed() const { return counter.has_failed(); }
