// What the benchmarks share: the floor, the clock, the heap, and the table they print.
//
// The floor is the least that reading an ASCII drawing takes: a loop over the same bytes that splits the lines and converts
// code and value, nothing more. Times are given as multiples of it, so that figures of different machines can be compared.
#pragma once

#include "sdk/vcdb_database.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <string>

namespace bench {

template <class Work>
double secondsOf(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The best of some runs: what else the machine does only ever adds.
template <class Work>
double bestOf(int runs, Work&& work)
{
    double best = secondsOf(work);
    while (--runs > 0)
        best = std::min(best, secondsOf(work));
    return best;
}

constexpr int kRuns = 3;

struct Drawing {
    std::string name;
    std::string bytes;
    double floor = 0;  // seconds
};

std::string bytesOf(const std::string& path);
// Reads the file and measures its floor; ends the program when it cannot be read.
Drawing drawingAt(const std::string& path);
// A database with the drawing in it; ends the program when it is no drawing.
std::unique_ptr<VcDbDatabase> load(const Drawing& drawing);
// What a person types, into the editor's drawing.
void type(const std::string& text);
// Ends the program with the reason where something does not hold.
void check(bool holds, const std::string& why);
// Entities of the layouts, and the attributes and vertices that belong to them.
std::size_t countEntities(const VcDbDatabase& database);
// What the allocator has handed out and not got back.
std::size_t liveBytes();

// One line for each thing measured and drawing. Growth is the time an entity takes in this drawing over the time it took in
// the drawing before: 1 where a program scales.
class Table {
public:
    Table();
    void row(const std::string& what, const Drawing& drawing, std::size_t entities, double seconds,
             const std::string& more = {});

private:
    std::map<std::string, double> m_secondsAnEntity;
};

}
