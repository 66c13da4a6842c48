// Linked into programs for the command line, so that they print the same bytes as on other systems: UTF-8, without
// carriage returns. The code page of a console outlives the program, so the previous one is restored.

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

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

const Utf8Console console;

} // namespace
