// Stands before the system in the modules of this process that work with files, by entries of their
// import tables, and lets calls on files fail.

#include "fault_injector.h"

#include "support/ImportTable.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <mutex>
#include <set>
#include <string>

#include <windows.h>

using zvtest::systemFunction;

namespace {

/// Null is the program itself.
constexpr std::array<const wchar_t*, 4> patchedModules = {L"Qt5Core.dll", L"libzvutil.dll",
                                                          L"libHostSupport.dll", nullptr};

std::atomic<bool> isArmed{false};
std::atomic<int> calls{0};
std::atomic<int> syncs{0};
std::atomic<const char*> struck{""};
std::wstring folder;
zv_fault order = {};
std::mutex mutex;
std::set<HANDLE> watched;

enum class Kind {
    Look,
    Create,
    Read,
    Write,
    Change,
};

enum class Effect {
    None,
    Failure,
    Half,
};

/// Whether \p path is that of a lock of settings. Qt keeps one open that it couldn't fill, so a fault
/// there would be that of all later runs.
bool isLock(const std::wstring& path)
{
    const std::wstring suffix = L".lock";
    return path.size() > suffix.size()
        && path.compare(path.size() - suffix.size(), suffix.size(), suffix) == 0;
}

bool isBelow(const wchar_t* path)
{
    if (!path || !isArmed)
        return false;
    std::wstring text(path);
    std::replace(text.begin(), text.end(), L'/', L'\\');
    return text.find(folder) != std::wstring::npos;
}

bool isBelow(HANDLE handle)
{
    const std::lock_guard lock(mutex);
    return watched.count(handle) > 0;
}

bool canBeHit(Kind kind)
{
    return order.action == zv_fault_fail || order.action == zv_fault_meanwhile
        || (order.action == zv_fault_short && (kind == Kind::Read || kind == Kind::Write));
}

Effect met(bool concerns, Kind kind, const char* name)
{
    if (!concerns || !isArmed)
        return Effect::None;
    const int number = ++calls;
    // After a short block there is still room for names: a save that took it for a whole one would
    // fail at its last step otherwise.
    const bool takesSpace =
        kind == Kind::Write || (kind == Kind::Create && order.action == zv_fault_fail);
    const bool isFull = order.lasts != 0 && takesSpace && number > order.number;
    if (!isFull && (number != order.number || !canBeHit(kind)))
        return Effect::None;
    if (*struck == '\0')
        struck = name;
    if (order.action == zv_fault_meanwhile) {
        isArmed = false;
        order.meanwhile();
        isArmed = true;
        return Effect::None;
    }
    if (order.action == zv_fault_short && !isFull)
        return Effect::Half;
    SetLastError(static_cast<DWORD>(order.error));
    return Effect::Failure;
}

DWORD part(Effect effect, DWORD size)
{
    return effect == Effect::Half ? size / 2 + size % 2 : size;
}

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security,
                         DWORD creation, DWORD flags, HANDLE pattern)
{
    const bool concerns = isBelow(path);
    const Kind kind = creation == OPEN_EXISTING ? Kind::Look : Kind::Create;
    if (met(concerns, kind, "CreateFileW") != Effect::None)
        return INVALID_HANDLE_VALUE;
    const HANDLE handle = systemFunction(&CreateFileW, "CreateFileW")(
        path, access, sharing, security, creation, flags, pattern);
    const std::lock_guard lock(mutex);
    if (concerns && !isLock(path) && handle != INVALID_HANDLE_VALUE)
        watched.insert(handle);
    else
        watched.erase(handle);
    return handle;
}

BOOL WINAPI closeHandle(HANDLE handle)
{
    {
        const std::lock_guard lock(mutex);
        watched.erase(handle);
    }
    return systemFunction(&CloseHandle, "CloseHandle")(handle);
}

BOOL WINAPI writeFile(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written,
                      LPOVERLAPPED overlapped)
{
    const Effect effect = met(isBelow(file), Kind::Write, "WriteFile");
    return effect == Effect::Failure ? FALSE
                                     : systemFunction(&WriteFile, "WriteFile")(
                                         file, bytes, part(effect, size), written, overlapped);
}

BOOL WINAPI readFile(HANDLE file, LPVOID bytes, DWORD size, LPDWORD count, LPOVERLAPPED overlapped)
{
    const Effect effect = met(isBelow(file), Kind::Read, "ReadFile");
    return effect == Effect::Failure
        ? FALSE
        : systemFunction(&ReadFile, "ReadFile")(file, bytes, part(effect, size), count, overlapped);
}

BOOL WINAPI flushFileBuffers(HANDLE file)
{
    const bool concerns = isBelow(file);
    if (met(concerns, Kind::Change, "FlushFileBuffers") != Effect::None)
        return FALSE;
    const BOOL result = systemFunction(&FlushFileBuffers, "FlushFileBuffers")(file);
    if (result != FALSE && concerns)
        ++syncs;
    return result;
}

BOOL WINAPI moveFileEx(LPCWSTR from, LPCWSTR to, DWORD flags)
{
    return met(isBelow(from) || isBelow(to), Kind::Change, "MoveFileExW") != Effect::None
        ? FALSE
        : systemFunction(&MoveFileExW, "MoveFileExW")(from, to, flags);
}

BOOL WINAPI moveFile(LPCWSTR from, LPCWSTR to)
{
    return met(isBelow(from) || isBelow(to), Kind::Change, "MoveFileW") != Effect::None
        ? FALSE
        : systemFunction(&MoveFileW, "MoveFileW")(from, to);
}

BOOL WINAPI deleteFile(LPCWSTR path)
{
    return met(isBelow(path), Kind::Change, "unlink (DeleteFileW)") != Effect::None
        ? FALSE
        : systemFunction(&DeleteFileW, "DeleteFileW")(path);
}

HANDLE WINAPI findFirstFileEx(LPCWSTR path, FINDEX_INFO_LEVELS level, LPVOID data,
                              FINDEX_SEARCH_OPS operation, LPVOID filter, DWORD flags)
{
    const bool concerns = isBelow(path);
    if (met(concerns, Kind::Look, "FindFirstFileExW") != Effect::None)
        return INVALID_HANDLE_VALUE;
    const HANDLE handle = systemFunction(&FindFirstFileExW, "FindFirstFileExW")(
        path, level, data, operation, filter, flags);
    const std::lock_guard lock(mutex);
    if (concerns && handle != INVALID_HANDLE_VALUE)
        watched.insert(handle);
    else
        watched.erase(handle);
    return handle;
}

HANDLE WINAPI findFirstFile(LPCWSTR path, LPWIN32_FIND_DATAW data)
{
    return findFirstFileEx(path, FindExInfoStandard, data, FindExSearchNameMatch, nullptr, 0);
}

BOOL WINAPI findNextFile(HANDLE handle, LPWIN32_FIND_DATAW data)
{
    return met(isBelow(handle), Kind::Look, "FindNextFileW") != Effect::None
        ? FALSE
        : systemFunction(&FindNextFileW, "FindNextFileW")(handle, data);
}

BOOL WINAPI findClose(HANDLE handle)
{
    {
        const std::lock_guard lock(mutex);
        watched.erase(handle);
    }
    return systemFunction(&FindClose, "FindClose")(handle);
}

const std::array<zvtest::ImportReplacement, 12>& replacements()
{
    static const std::array<zvtest::ImportReplacement, 12> all = {{
        {"CreateFileW", &createFile},
        {"CloseHandle", &closeHandle},
        {"WriteFile", &writeFile},
        {"ReadFile", &readFile},
        {"FlushFileBuffers", &flushFileBuffers},
        {"MoveFileExW", &moveFileEx},
        {"MoveFileW", &moveFile},
        {"DeleteFileW", &deleteFile},
        {"FindFirstFileExW", &findFirstFileEx},
        {"FindFirstFileW", &findFirstFile},
        {"FindNextFileW", &findNextFile},
        {"FindClose", &findClose},
    }};
    return all;
}

void patchModules()
{
    static const bool isPatched = [] {
        for (const wchar_t* const name : patchedModules)
            zvtest::replaceImports(name, replacements());
        return true;
    }();
    static_cast<void>(isPatched);
}

} // namespace

extern "C" {

void zv_faults_arm(const char* where, const zv_fault* fault)
{
    patchModules();
    zv_faults_disarm();
    folder = std::wstring(where, where + std::strlen(where));
    std::replace(folder.begin(), folder.end(), L'/', L'\\');
    order = *fault;
    calls = 0;
    syncs = 0;
    struck = "";
    isArmed = true;
}

void zv_faults_disarm()
{
    isArmed = false;
}

int zv_faults_calls()
{
    return calls;
}

int zv_faults_syncs()
{
    return syncs;
}

const char* zv_faults_struck()
{
    return struck;
}
}
