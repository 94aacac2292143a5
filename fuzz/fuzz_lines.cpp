// SPDX-License-Identifier: MIT
// Feeds the reader of backup lines with any line; it must make of it what the model makes of it.
#include "backup.h"
#include "backup_model.h"

#include <cstdint>
#include <cstdlib>

namespace
{

using Backup::TRecord;

bool Is_Same(const Types::TBallbar_Item& a, const Backup_Model::TPosition& b)
{
    const std::array<double, 11> numbers{a.sph1.x,    a.sph1.y,    a.sph1.z, a.sph2.x, a.sph2.y, a.sph2.z,
                                         a.sph1_form, a.sph2_form, a.tool.x, a.tool.y, a.tool.z};
    return TDatabaseItem::Clean_String(a.name) == b.name && numbers == b.numbers;
}

bool Is_As_Modelled(const QByteArray& line)
{
    const TRecord record = Backup::Read_Line(line);
    const QString text = Backup_Model::Text(line);
    Backup_Model::TPosition position;
    if (Backup_Model::Is_Header(text))
        return record.kind == TRecord::HEADER;
    if (text.startsWith("Entry_Date:") || text.startsWith("Entry_Time:"))
        return record.kind == (text[6] == 'D' ? TRecord::DATE : TRecord::TIME) && record.text == text.mid(11);
    if (text.startsWith("Entry:") && Backup_Model::Read_Position(text.mid(6), &position))
        return record.kind == TRecord::POSITION && Is_Same(record.position, position);
    return record.kind == TRecord::UNKNOWN;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    int position = 0;
    for (const QByteArray& line : content.split('\n')) {
        if (!Is_As_Modelled(line) || Backup::Next_Line(content, &position) != line)
            std::abort();
    }
    return 0;
}
