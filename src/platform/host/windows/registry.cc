// See registry.h.
#include "platform/host/windows/registry.h"

#include "platform/host/windows/wide_text.h"
#include "platform/host/windows/win32_status.h"

#include <algorithm>

namespace kx::host {
namespace {

FileStatus StatusOfResult(LSTATUS result) {
  return result == ERROR_SUCCESS ? FileStatus::kOk
                                 : StatusOfWin32Error(static_cast<std::uint32_t>(result));
}

// Owns an open key.
class Key {
 public:
  Key() = default;
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  [[nodiscard]] HKEY Get() const { return key_; }
  [[nodiscard]] HKEY* Out() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

// Reads a value whose length may change while it is read.
LSTATUS ReadValue(HKEY key, const std::wstring& name, DWORD& type, std::wstring& value) {
  DWORD bytes = 512;
  LSTATUS result = ERROR_MORE_DATA;
  while (result == ERROR_MORE_DATA) {
    value.resize(bytes / sizeof(wchar_t) + 1);
    bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    result = RegQueryValueExW(key, name.c_str(), nullptr, &type,
                              reinterpret_cast<BYTE*>(value.data()), &bytes);
  }
  if (result != ERROR_SUCCESS) return result;
  value.resize(bytes / sizeof(wchar_t));
  value.resize(std::min(value.find(L'\0'), value.size()));  // the end mark is optional
  return ERROR_SUCCESS;
}

}  // namespace

FileStatus ReadRegistryText(const std::string& key, const std::string& name,
                            std::optional<std::string>& text) {
  text.reset();
  Key opened;
  LSTATUS result =
      RegOpenKeyExW(HKEY_CURRENT_USER, ToWide(key).c_str(), 0, KEY_QUERY_VALUE, opened.Out());
  if (result == ERROR_FILE_NOT_FOUND) return FileStatus::kOk;
  if (result != ERROR_SUCCESS) return StatusOfResult(result);
  DWORD type = REG_NONE;
  std::wstring value;
  result = ReadValue(opened.Get(), ToWide(name), type, value);
  if (result == ERROR_FILE_NOT_FOUND) return FileStatus::kOk;
  if (result != ERROR_SUCCESS) return StatusOfResult(result);
  if (type != REG_SZ && type != REG_EXPAND_SZ) return FileStatus::kBadName;
  text = FromWide(value);
  return FileStatus::kOk;
}

FileStatus WriteRegistryText(const std::string& key, const std::string& name,
                             const std::string& text) {
  Key opened;
  LSTATUS result =
      RegCreateKeyExW(HKEY_CURRENT_USER, ToWide(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_SET_VALUE | KEY_QUERY_VALUE, nullptr, opened.Out(), nullptr);
  if (result != ERROR_SUCCESS) return StatusOfResult(result);
  const std::wstring value = ToWide(text);
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  result = RegSetValueExW(opened.Get(), ToWide(name).c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(value.c_str()), bytes);
  if (result == ERROR_SUCCESS) result = RegFlushKey(opened.Get());
  return StatusOfResult(result);
}

}  // namespace kx::host
