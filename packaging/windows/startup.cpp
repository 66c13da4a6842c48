// Linked into the programs for Windows and run before main(): makes them behave as on other systems.

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <windows.h>

namespace {

// Output is UTF-8, without carriage returns. The code page of a console outlives the program, so the previous one is
// restored.
class Utf8Console
{
public:
    Utf8Console() : m_previous(GetConsoleOutputCP())
    {
        SetConsoleOutputCP(CP_UTF8);
        _setmode(1, _O_BINARY);
        _setmode(2, _O_BINARY);
    }
    ~Utf8Console() { SetConsoleOutputCP(m_previous); }
    Utf8Console(const Utf8Console &) = delete;
    Utf8Console &operator=(const Utf8Console &) = delete;

private:
    UINT m_previous;
};

// Qt's offscreen platform, which imports without a window use, does not look for the fonts of the system.
bool nameFonts()
{
    const wchar_t *const variable = L"QT_QPA_FONTDIR";
    wchar_t folder[MAX_PATH] = L"";
    return _wgetenv(variable) != nullptr || (ExpandEnvironmentStringsW(L"%SystemRoot%\\Fonts", folder, MAX_PATH) != 0 &&
                                             _wputenv_s(variable, folder) == 0);
}

const Utf8Console console;
const bool fontsAreNamed = nameFonts();

} // namespace
