// See win32_host.h.
#include "platform/host/windows/win32_host.h"

#include "platform/host/windows/wide_text.h"
#include "platform/runtime/error.h"

#include <vector>

// After windows.h, which they need.
#include <objbase.h>
#include <rpc.h>

namespace kx::host {
namespace {

CalendarTime FromSystemTime(const SYSTEMTIME& time) {
  return {time.wYear,   time.wMonth,  time.wDay,         time.wHour,
          time.wMinute, time.wSecond, time.wMilliseconds};
}

// A text of which the system tells the length it needs.
template <typename Call>
std::string TextOf(Call call) {
  std::wstring buffer(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = call(buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length < buffer.size()) return FromWide(std::wstring_view(buffer).substr(0, length));
    buffer.resize(length + 1);
  }
}

}  // namespace

Win32Host::~Win32Host() {
  if (privateFolder_.empty()) return;
  std::vector<std::string> names;
  static_cast<void>(files_.ListNames(privateFolder_, names));
  for (const std::string& name : names) static_cast<void>(files_.Remove(privateFolder_ + name));
  RemoveDirectoryW(ToWide(privateFolder_).c_str());
}

CalendarTime Win32Host::LocalTime() {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return FromSystemTime(time);
}

CalendarTime Win32Host::UtcTime() {
  SYSTEMTIME time{};
  GetSystemTime(&time);
  return FromSystemTime(time);
}

std::uint64_t Win32Host::Ticks() { return GetTickCount64(); }

std::string Win32Host::NewGuid() {
  GUID guid{};
  RPC_CSTR text = nullptr;
  if (FAILED(CoCreateGuid(&guid)) || UuidToStringA(&guid, &text) != RPC_S_OK) {
    runtime::RaiseRuntimeError(runtime::kOutOfMemory);
  }
  std::string result(reinterpret_cast<const char*>(text));  // RPC counts in unsigned char
  RpcStringFreeA(&text);
  return result;
}

std::optional<std::string> Win32Host::Environment(std::string_view name) {
  const std::wstring wideName = ToWide(name);
  SetLastError(ERROR_SUCCESS);
  std::string value = TextOf([&](wchar_t* buffer, DWORD size) {
    return GetEnvironmentVariableW(wideName.c_str(), buffer, size);
  });
  if (value.empty() && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
  return value;
}

std::optional<std::string> Win32Host::HomeFolder() { return Environment("USERPROFILE"); }

std::string Win32Host::SystemFolder() {
  return TextOf([](wchar_t* buffer, DWORD size) { return GetSystemDirectoryW(buffer, size); });
}

std::string Win32Host::TemporaryFolder() {
  return TextOf([](wchar_t* buffer, DWORD size) { return GetTempPathW(size, buffer); });
}

std::string Win32Host::PrivateTemporaryFolder() {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (!privateFolder_.empty()) return privateFolder_;
  const std::string folder = TemporaryFolder() + "kxmessage-" + NewGuid();
  if (CreateDirectoryW(ToWide(folder).c_str(), nullptr) == 0) {
    runtime::RaiseRuntimeError(runtime::kPathFileAccessError);
  }
  privateFolder_ = folder + "\\";
  return privateFolder_;
}

void Win32Host::YieldToUserInterface() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (message.message == WM_QUIT) {
      // Not ours to take: the loop that the program ends with must see it.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

Host& ProcessHost() {
  static Win32Host host;
  return host;
}

}  // namespace kx::host
