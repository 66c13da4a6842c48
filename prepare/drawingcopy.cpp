#include "drawingcopy.h"

#include <cpl_vsi.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

struct Closer
{
    void operator()(VSILFILE *file) const { VSIFCloseL(file); }
};

using File = std::unique_ptr<VSILFILE, Closer>;

// Copies \a count bytes, or all that remain if it is negative.
bool copyBytes(VSILFILE *from, VSILFILE *to, qint64 count)
{
    std::array<char, 1 << 16> buffer{};
    while (count != 0) {
        const auto room = static_cast<qint64>(buffer.size());
        const auto wanted = static_cast<std::size_t>(count < 0 ? room : std::min(count, room));
        const std::size_t size = VSIFReadL(buffer.data(), 1, wanted, from);
        if (VSIFWriteL(buffer.data(), 1, size, to) != size)
            return false;
        if (size < wanted)
            return count < 0;
        count -= count < 0 ? 0 : static_cast<qint64>(size);
    }
    return true;
}

} // namespace

bool copyWithEdits(const QByteArray &fileName, const QByteArray &copyName, const std::vector<DrawingEdit> &edits)
{
    const File from(VSIFOpenL(fileName.constData(), "rb"));
    const File to(VSIFOpenL(copyName.constData(), "wb"));
    if (!from || !to)
        return false;
    qint64 position = 0;
    for (const DrawingEdit &edit : edits) {
        if (!copyBytes(from.get(), to.get(), edit.position - position))
            return false;
        const auto size = static_cast<std::size_t>(edit.text.size());
        if (VSIFWriteL(edit.text.constData(), 1, size, to.get()) != size)
            return false;
        position = edit.position + edit.length;
        VSIFSeekL(from.get(), static_cast<vsi_l_offset>(position), SEEK_SET);
    }
    return copyBytes(from.get(), to.get(), -1);
}

std::vector<ReplacedLines> replacedLines(const std::vector<DrawingEdit> &edits)
{
    std::vector<ReplacedLines> replaced;
    qint64 added = 0;
    for (const DrawingEdit &edit : edits) {
        const qint64 count = edit.text.count('\n');
        if (count == 0 && edit.lineCount == 0)
            continue;
        replaced.push_back({edit.line + added, count, edit.line, edit.lineCount});
        added += count - edit.lineCount;
    }
    return replaced;
}

qint64 lineBeforeEdits(qint64 line, const std::vector<ReplacedLines> &replaced)
{
    qint64 added = 0;
    for (const ReplacedLines &lines : replaced) {
        if (line < lines.line)
            break;
        if (line < lines.line + lines.count)
            return lines.lineBefore;
        added += lines.count - lines.countBefore;
    }
    return line - added;
}
