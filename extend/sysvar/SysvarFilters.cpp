#include "sysvar/SysvarFilters.h"

#include "sysvar/SysvarValues.h"
#include "vced.h"

namespace {

bool isAny(const SysvarData&) { return true; }

bool isWritable(const SysvarData& record) { return !record.readOnly; }

CStdStrW scriptLine(const SysvarData& record)
{
    if (record.readOnly)
        return L"; read-only - " + record.name + L" \n";
    resbuf value = {};
    if (vcedGetVar(record.name, &value) != RTNORM)
        return {};
    const CStdStrW line = L"(setvar \"" + record.name + L"\" " + scriptValue(record, value) + L")\n";
    releaseValue(value);
    return line;
}

CStdStrW snapshotLine(const SysvarData& record) { return globalName(record.name) + L" " + record.current + L"\n"; }

CStdStrW textOf(const SysvarArray& records, const CStringArray& names, const SysvarIndex::Admits& admits,
                CStdStrW (*lineOf)(const SysvarData&))
{
    const SysvarIndex index(records, SysvarIndex::Underscore::Counts, admits);
    CStdStrW text;
    for (int i = 0; i < names.GetSize(); ++i)
        if (const int at = index.find(names.GetAt(i)); at >= 0)
            text += lineOf(records.GetAt(at));
    return text;
}

}  // namespace

SysvarIndex::SysvarIndex(const SysvarArray& records, Underscore underscore, const Admits& admits)
    : m_underscore(underscore)
{
    for (int i = 0; i < records.GetSize(); ++i)
        if (admits(records.GetAt(i)))
            m_places.try_emplace(key(records.GetAt(i).name), i);
}

int SysvarIndex::find(const CStdStrW& name) const
{
    const auto found = m_places.find(key(name));
    return found == m_places.end() ? -1 : found->second;
}

std::wstring SysvarIndex::key(CStdStrW name) const
{
    name.MakeUpper();
    return (m_underscore == Underscore::Optional ? globalName(name) : name).str();
}

CStdStrW globalName(const CStdStrW& name) { return name.GetAt(0) == L'_' ? name : L"_" + name; }

CStdStrW filterText(const CStdStrW& path, const SysvarArray& records, const CStringArray& names)
{
    CStdStrW ending = path.Right(4);
    ending.MakeUpper();
    if (ending == L".SCR")
        return textOf(records, names, isAny, scriptLine);
    if (ending == L".SVF")
        return textOf(records, names, isWritable, snapshotLine);
    return {};
}

std::optional<FilterLine> parseFilterLine(CStdStrW line)
{
    line.Trim();
    const int blank = line.Find(L' ');
    if (blank < 0)
        return std::nullopt;
    CStdStrW value = line.Mid(blank);
    value.Trim();
    return FilterLine{globalName(line.Left(blank)), value};
}
