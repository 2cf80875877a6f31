// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "QualityReport.h"

#include "service/Table.h"

#include <cstdio>

namespace bench
{

namespace
{

std::string percentText(int part, int whole)
{
    return QString::number(100.0 * part / whole, 'f', 1).toStdString();
}

} // namespace

void printQuality(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown)
{
    const std::string upper = groups.upperName;
    const std::string both = groups.bothName;
    const std::string upperGroup = "group " + std::to_string(groups.upper);
    const std::string lowerGroup = "group " + std::to_string(groups.lower);
    Table table({"set", "asked", upper + ": first %", "in five %", both + ": first %", "in five %",
                 upperGroup + ": median", "95 %", lowerGroup + ": median", "95 %"});
    for (const AskedSet &set : sets) {
        table.add({set.name.toStdString(), std::to_string(set.asked), percentText(set.upper.first, set.asked),
                   percentText(set.upper.withinFive, set.asked), percentText(set.both.first, set.asked),
                   percentText(set.both.withinFive, set.asked), timeText(set.upperTimes.median()),
                   timeText(set.upperTimes.quantile(0.95)), timeText(set.lowerTimes.median()),
                   timeText(set.lowerTimes.quantile(0.95))});
    }
    table.print(asMarkdown);
}

void printTimes(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown)
{
    const std::string upper = "group " + std::to_string(groups.upper);
    const std::string lower = "group " + std::to_string(groups.lower);
    Table table({"terms", "asked", upper + ": median", "longest", lower + ": median", "longest"});
    for (const AskedSet &set : sets) {
        table.add({set.name.toStdString(), std::to_string(set.asked), timeText(set.upperTimes.median()),
                   timeText(set.upperTimes.quantile(1)), timeText(set.lowerTimes.median()),
                   timeText(set.lowerTimes.quantile(1))});
    }
    table.print(asMarkdown);
}

void printMisses(const std::vector<AskedSet> &sets)
{
    std::printf("set\ttyped\tmeant\tfound first\n");
    for (const AskedSet &set : sets) {
        for (const Miss &miss : set.misses) {
            std::printf("%s\t%s\t%s\t%s\n", qUtf8Printable(set.name), qUtf8Printable(miss.typed),
                        qUtf8Printable(miss.meant), qUtf8Printable(miss.found));
        }
    }
}

} // namespace bench
