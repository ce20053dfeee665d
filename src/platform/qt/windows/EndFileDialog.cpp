#include "platform/qt/EndFileDialog.h"

#include <windows.h>

namespace platform {
namespace {

void RemoveEmptyKey(const wchar_t* name)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    DWORD keys = 0;
    DWORD values = 0;
    const auto known = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                        nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (known == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(HKEY_CURRENT_USER, name);
}

} // namespace

// No call keeps the toolkit's file dialog from the registry. It makes a key there at its start, and fills it when it is
// destroyed. So it isn't destroyed, and the key goes where it is empty: other programs may have written to it.
void EndFileDialog::operator()(QFileDialog* dialog) const
{
    dialog->setParent(nullptr);
    RemoveEmptyKey(L"Software\\QtProject\\OrganizationDefaults");
    RemoveEmptyKey(L"Software\\QtProject");
}

} // namespace platform
