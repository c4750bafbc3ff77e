#include "FaultyFileSystem.h"

#include <new>

namespace {

enum class Fault { none, broken_once, broken, full, held };

struct Orders {
  Fault fault = Fault::none;
  int calls_left = 0;
  bool failed = false;
};

Orders orders;
sqlite3_vfs* real_vfs = nullptr;
sqlite3_vfs faulty_vfs;

/// Whether a call meets the fault that is ordered. `own` is the one that only calls of its kind meet.
bool fails(Fault own = Fault::none) {
  const bool meets_all = orders.fault == Fault::broken_once || orders.fault == Fault::broken;
  if (orders.fault == Fault::none || (!meets_all && orders.fault != own)) return false;
  if (orders.calls_left > 1) {
    --orders.calls_left;
    return false;
  }
  orders.failed = true;
  if (orders.fault == Fault::broken_once || orders.fault == Fault::held) orders.fault = Fault::none;
  return true;
}

/// A file of ours, with the real one behind it in the same memory.
struct FaultyFile : sqlite3_file {
  sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_file* real(sqlite3_file* file) { return static_cast<FaultyFile*>(file)->real(); }

int close(sqlite3_file* file) { return real(file)->pMethods->xClose(real(file)); }

int read(sqlite3_file* file, void* buffer, int size, sqlite3_int64 offset) {
  return fails() ? SQLITE_IOERR_READ : real(file)->pMethods->xRead(real(file), buffer, size, offset);
}

int write(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 offset) {
  const bool is_full = orders.fault == Fault::full;
  if (fails(Fault::full)) return is_full ? SQLITE_FULL : SQLITE_IOERR_WRITE;
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
  const bool is_held = orders.fault == Fault::held;
  if (fails(Fault::held)) return is_held ? SQLITE_BUSY : SQLITE_IOERR_LOCK;
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
  mend();
}

FaultyFileSystem::~FaultyFileSystem() {
  sqlite3_vfs_unregister(&faulty_vfs);
  sqlite3_vfs_register(real_vfs, 1);
}

void FaultyFileSystem::break_call(int nth, bool lasting) {
  orders = {lasting ? Fault::broken : Fault::broken_once, nth, false};
}

void FaultyFileSystem::fill_at_write(int nth) { orders = {Fault::full, nth, false}; }

void FaultyFileSystem::hold_at_lock(int nth) { orders = {Fault::held, nth, false}; }

void FaultyFileSystem::mend() { orders.fault = Fault::none; }

bool FaultyFileSystem::failed() const { return orders.failed; }
