// A program that knows no Qt, at the clipboard of Windows.
//
//     windows_clipboard read FORMAT          prints what is there: text as UTF-8, other bytes as they are
//     windows_clipboard formats              prints the names of the formats
//     windows_clipboard offer FORMAT         puts there what it reads from standard input

#include <array>
#include <cstdio>
#include <cstring>
#include <string>

#include <windows.h>

#include <fcntl.h>
#include <io.h>

namespace {

const std::string unicodeText = "CF_UNICODETEXT";

UINT numberOf(const std::string& format)
{
    return format == unicodeText ? CF_UNICODETEXT : RegisterClipboardFormatA(format.c_str());
}

std::string nameOf(UINT format)
{
    std::array<char, 200> name{};
    if (format == CF_UNICODETEXT)
        return unicodeText;
    return GetClipboardFormatNameA(format, name.data(), static_cast<int>(name.size())) > 0
        ? name.data()
        : std::to_string(format);
}

void write(const std::string& bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::string utf8Of(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();
    return bytes;
}

bool read(const std::string& format)
{
    const HANDLE data = GetClipboardData(numberOf(format));
    const void* const bytes = data ? GlobalLock(data) : nullptr;
    if (!bytes)
        return false;
    if (format == unicodeText)
        write(utf8Of(static_cast<const wchar_t*>(bytes)));
    else
        write(std::string(static_cast<const char*>(bytes), GlobalSize(data)));
    GlobalUnlock(data);
    return true;
}

void listFormats()
{
    for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format))
        write(nameOf(format) + '\n');
}

std::string input()
{
    std::string bytes;
    for (int byte = std::getchar(); byte != EOF; byte = std::getchar())
        bytes += static_cast<char>(byte);
    return bytes;
}

bool offer(const std::string& format)
{
    std::string bytes = input();
    if (format == unicodeText) {
        std::wstring text(bytes.size() + 1, L'\0');
        MultiByteToWideChar(CP_UTF8, 0, bytes.c_str(), -1, text.data(),
                            static_cast<int>(text.size()));
        bytes.assign(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
    }
    const HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(GlobalLock(data), bytes.data(), bytes.size());
    GlobalUnlock(data);
    return EmptyClipboard() && SetClipboardData(numberOf(format), data);
}

/// Another program may be at the clipboard just now.
bool openClipboard(HWND window)
{
    for (int tries = 0; tries < 1'000; ++tries) {
        if (OpenClipboard(window))
            return true;
        Sleep(10);
    }
    return false;
}

bool run(const std::string& command, const std::string& format)
{
    if (command == "offer")
        return offer(format);
    if (command == "formats") {
        listFormats();
        return true;
    }
    return command == "read" && read(format);
}

} // namespace

int main(int argc, char* argv[])
{
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (argc < 2 || !openClipboard(window))
        return 2;
    const bool isDone = run(argv[1], argc > 2 ? argv[2] : "");
    CloseClipboard();
    return isDone ? 0 : 1;
}
