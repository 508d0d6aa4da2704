// Stored objects beside protobuf, msgpack, nlohmann/json, RapidJSON and pugixml: records of 20 fields in an array, and
// objects of the same fields in a tree.
//
//     bench_formats [RECORDS [TURNS [PART]]]     100000 5
//
// Each turn saves and loads once with every side of a comparison, one after the other; the figures are medians of the
// processor's time in nanoseconds a record. "ratio" is the peer's time by ours. "free" is what it takes to give back
// what was loaded, which is no part of the loading; "fresh" calls get their memory from the system, "warm" ones what
// the call before them gave back.
//
// Ours go through the functions that save and load objects, so that a binary format also pays for the hash in front of
// it, in both directions. Who keeps the others' bytes in files has such a hash to add; the bench does not.
// The parts are zbf, raw, json, xml, tree and growth; all of them without a name.
#include "bench_allocations.h"
#include "bench_versus.h"
#include "formats_peers.h"
#include "host/zyr_framework.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <cstdio>
#include <cstdlib>
#include <malloc.h>

using namespace zyr;
using namespace zyr::bench;

namespace {

constexpr size_t LEAVES = 1000;

uint64_t getSumOf(IObject* p_object) {
    if (const auto* table = dynamic_cast<RecordList*>(p_object)) {
        uint64_t sum = 0;
        for (const StoredRecord& record : table->m_records) {
            sum += getSum(record);
        }
        return sum;
    }
    if (const auto* leaf = dynamic_cast<RecordObject*>(p_object)) {
        return getSum(leaf->m_record);
    }
    auto* list = static_cast<IListOfObjects*>(p_object);
    uint64_t sum = 0;
    for (auto it = list->begin(); it != list->end(); ++it) {
        sum += getSumOf(*it);
    }
    return sum;
}

class StoredSide : public FormatSide {
public:
    StoredSide(const Ref<IObject>& p_object, const char* p_format)
        : m_object(Ref<IObject>::share(p_object.get())), m_format(p_format) {}
    void dropSaved() override { m_data.clear(); }
    void save() override {
        if (!zyr_saveToData(m_object.get(), m_data, m_format, 0, "")) {
            abort();
        }
    }
    size_t getSize() const override { return m_data.getSize(); }
    void load() override {
        m_loaded = Ref<IObject>::adopt(zyr_loadFromData(m_data, m_format, ""));
        if (!m_loaded) {
            abort();
        }
    }
    uint64_t getLoadedSum() const override { return getSumOf(m_loaded.get()); }
    void dropLoaded() override { m_loaded = Ref<IObject>(); }
    /// What a save and a load of a binary format do once each.
    bool isHashed() const { return m_format == "zbf" || m_format == "raw"; }
    uint64_t hash() const { return zyr_xxHash64(m_data.getData(), m_data.getSize(), 1); }

private:
    Ref<IObject> m_object;
    String m_format;
    Array<unsigned char> m_data;
    Ref<IObject> m_loaded;
};

Ref<IObject> makeTable(const PlainRecords& p_records) {
    auto* table = new RecordList;
    table->m_records.resize(p_records.size());
    for (size_t i = 0; i < p_records.size(); i++) {
        copyRecord(table->m_records[i], p_records[i]);
    }
    return Ref<IObject>::adopt(table);
}

Ref<IObject> makeTree(const PlainRecords& p_records) {
    auto tree = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
    IListOfObjects* branch = nullptr;
    for (size_t i = 0; i < p_records.size(); i++) {
        if (i % LEAVES == 0) {
            branch = zyr_createObject<IListOfObjects>();
            tree->pushBack(branch);
            branch->release();
        }
        auto* leaf = new RecordObject;
        copyRecord(leaf->m_record, p_records[i]);
        branch->pushBack(leaf);
        leaf->release();
    }
    return Ref<IObject>(std::move(tree));
}

size_t countBlocks() {
    size_t sum = 0;
    for (const size_t count : countAllocations()) {
        sum += count;
    }
    return sum;
}

/// Nanoseconds a record.
struct Times {
    std::vector<double> m_save;
    std::vector<double> m_load;
    std::vector<double> m_free;
};

struct Side {
    std::string m_name;
    std::unique_ptr<FormatSide> m_side;
    /// What ours should reach, as shares of this side's speed; 0 where none is set.
    double m_saveTarget = 0;
    double m_loadTarget = 0;
    /// With memory that is new to the process, and with such as the last call gave back.
    Times m_fresh;
    Times m_warm;
};

double measure(size_t p_count, const std::function<void()>& p_work) {
    const double start = getProcessorTime();
    p_work();
    return (getProcessorTime() - start) / static_cast<double>(p_count);
}

void takeTurn(FormatSide& p_side, size_t p_count, Times& p_times, bool p_fresh) {
    const auto prepare = [&] {
        if (p_fresh) {
            malloc_trim(0);
        }
    };
    p_side.dropSaved();
    prepare();
    p_times.m_save.push_back(measure(p_count, [&] { p_side.save(); }));
    prepare();
    p_times.m_load.push_back(measure(p_count, [&] { p_side.load(); }));
}

void dropLoaded(FormatSide& p_side, size_t p_count, Times& p_times) {
    p_times.m_free.push_back(measure(p_count, [&] { p_side.dropLoaded(); }));
}

void print(const char* p_what, Times& p_times, Times& p_ours, const Side* p_peer) {
    const double save = getMedian(p_times.m_save);
    const double load = getMedian(p_times.m_load);
    const double free = getMedian(p_times.m_free);
    printf("    %s: save %5.0f, load %5.0f, free %4.0f ns", p_what, save, load, free);
    if (p_peer != nullptr) {
        printf("; ratio of save %5.2f", save / getMedian(p_ours.m_save));
        if (p_peer->m_saveTarget != 0) {
            printf(" (%g)", p_peer->m_saveTarget);
        }
        printf(", of load %5.2f", load / getMedian(p_ours.m_load));
        if (p_peer->m_loadTarget != 0) {
            printf(" (%g)", p_peer->m_loadTarget);
        }
        printf(", of load and free %5.2f", (load + free) / (getMedian(p_ours.m_load) + getMedian(p_ours.m_free)));
    }
    printf("\n");
}

/// Ours first, then its peers.
void compare(const char* p_title, const PlainRecords& p_records, int p_turns, std::vector<Side>& p_sides) {
    uint64_t sum = 0;
    for (const PlainRecord& record : p_records) {
        sum += getSum(record);
    }
    const size_t count = p_records.size();
    for (int turn = 0; turn < p_turns; turn++) {
        for (Side& side : p_sides) {
            takeTurn(*side.m_side, count, side.m_fresh, true);
            if (turn == 0 && side.m_side->getLoadedSum() != sum) {
                fprintf(stderr, "%s doesn't give the records back\n", side.m_name.c_str());
                exit(1);
            }
            dropLoaded(*side.m_side, count, side.m_fresh);
            takeTurn(*side.m_side, count, side.m_warm, false);
            dropLoaded(*side.m_side, count, side.m_warm);
        }
    }
    printf("%s\n", p_title);
    const auto* ours = dynamic_cast<const StoredSide*>(p_sides[0].m_side.get());
    if (ours != nullptr && ours->isHashed()) {
        std::vector<double> times;
        uint64_t hashes = 0;
        for (int turn = 0; turn < p_turns; turn++) {
            times.push_back(measure(count, [&] { hashes ^= ours->hash(); }));
        }
        printf("  the hash alone: %.0f ns%s\n", getMedian(times), hashes == 1 ? " " : "");
    }
    for (Side& side : p_sides) {
        const Side* peer = &side != &p_sides[0] ? &side : nullptr;
        printf("  %s, %.0f bytes\n", side.m_name.c_str(),
               static_cast<double>(side.m_side->getSize()) / static_cast<double>(count));
        print("fresh", side.m_fresh, p_sides[0].m_fresh, peer);
        print("warm ", side.m_warm, p_sides[0].m_warm, peer);
    }
    fflush(stdout);
}

Side makeSide(const char* p_name, std::unique_ptr<FormatSide> p_side, double p_saveTarget = 0,
              double p_loadTarget = 0) {
    Side side;
    side.m_name = p_name;
    side.m_side = std::move(p_side);
    side.m_saveTarget = p_saveTarget;
    side.m_loadTarget = p_loadTarget;
    return side;
}

std::unique_ptr<FormatSide> makeStored(const Ref<IObject>& p_object, const char* p_format) {
    return std::make_unique<StoredSide>(p_object, p_format);
}

template <typename... Sides>
void compareSidesOf(const char* p_title, const PlainRecords& p_records, int p_turns, Sides... p_sides) {
    std::vector<Side> sides;
    (sides.push_back(std::move(p_sides)), ...);
    compare(p_title, p_records, p_turns, sides);
}

/// A comparison of arrays.
template <typename... Sides>
void compareTables(const char* p_format, const PlainRecords& p_records, int p_turns, Sides... p_sides) {
    const Ref<IObject> table = makeTable(p_records);
    compareSidesOf(p_format, p_records, p_turns, makeSide(p_format, makeStored(table, p_format)),
                   std::move(p_sides)...);
}

void compareFormats(const PlainRecords& p_records, int p_turns, const std::string& p_part) {
    const auto isAsked = [&](const char* p_name) { return p_part.empty() || p_part == p_name; };
    if (isAsked("zbf")) {
        compareTables("zbf", p_records, p_turns, makeSide("protobuf", makeProtobuf(p_records), 0.9, 1.2));
    }
    if (isAsked("raw")) {
        compareTables("raw", p_records, p_turns, makeSide("msgpack", makeMsgpack(p_records), 1.5, 4));
    }
    if (isAsked("json")) {
        compareTables("json", p_records, p_turns, makeSide("nlohmann", makeNlohmann(p_records), 10, 5),
                      makeSide("RapidJSON", makeRapidJson(p_records, true), 1.4, 1.2),
                      makeSide("RapidJSON, nothing indented", makeRapidJson(p_records, false)));
    }
    if (isAsked("xml")) {
        compareTables("xml", p_records, p_turns, makeSide("pugixml", makePugixml(p_records), 5, 2));
    }
    if (isAsked("tree")) {
        const Ref<IObject> tree = makeTree(p_records);
        compareSidesOf("tree of objects", p_records, p_turns, makeSide("zbf", makeStored(tree, "zbf")),
                       makeSide("protobuf", makeProtobufTree(p_records, LEAVES)),
                       makeSide("raw", makeStored(tree, "raw")), makeSide("json", makeStored(tree, "json")),
                       makeSide("xml", makeStored(tree, "xml")));
    }
}

/// Nanoseconds a record, which stay as they are where the time grows with the number of records.
void showGrowth(size_t p_largest) {
    // Not before: counting costs time in each call of the heap.
    watchModules({"", "zyr_core.so"});
    printf("growth, save and load in ns a record, blocks of a load\n");
    for (const char* format : {"zbf", "raw", "json", "xml"}) {
        for (size_t count = 1000; count <= p_largest; count *= 10) {
            Ref<IObject> table = makeTable(makePlainRecords(count));
            StoredSide side(table, format);
            std::vector<double> saves;
            std::vector<double> loads;
            size_t blocks = 0;
            for (size_t turn = 0; turn < (count < 100000 ? 9 : 1); turn++) {
                side.dropSaved();
                malloc_trim(0);
                saves.push_back(measure(count, [&] { side.save(); }));
                const size_t before = countBlocks();
                loads.push_back(measure(count, [&] { side.load(); }));
                blocks = countBlocks() - before;
                side.dropLoaded();
            }
            printf("  %-4s %7zu records: save %5.0f, load %5.0f, %zu blocks\n", format, count, getMedian(saves),
                   getMedian(loads), blocks);
            fflush(stdout);
        }
    }
}

} // namespace

int main(int p_argc, char** p_argv) {
    const size_t count = p_argc > 1 ? strtoull(p_argv[1], nullptr, 10) : 100000;
    const int turns = p_argc > 2 ? atoi(p_argv[2]) : 5;
    host::FrameworkOptions options;
    options.m_coreOnly = true;
    options.m_logLevel = ZYR_LOG_LEVEL_WARN;
    const host::Framework framework(options);
    zyr_addObjectAllocator<RecordList>();
    zyr_addObjectAllocator<RecordObject>();
    const std::string part = p_argc > 3 ? p_argv[3] : "";
    compareFormats(makePlainRecords(count), turns, part);
    if (part.empty() || part == "growth") {
        showGrowth(count * 10);
    }
    return 0;
}
