/// The libraries beside which bench_formats measures, each behind the same operations.
#pragma once

#include "formats_records.h"

#include <memory>

namespace zyr::bench {

/// One way to store the records. What it saved and what it loaded stay until they are dropped, so that giving memory
/// back is not part of a time.
class FormatSide {
public:
    virtual ~FormatSide() = default;
    virtual void dropSaved() = 0;
    virtual void save() = 0;
    virtual size_t getSize() const = 0;
    /// Loads what the last save made.
    virtual void load() = 0;
    /// Over all loaded records; 0 where nothing is loaded.
    virtual uint64_t getLoadedSum() const = 0;
    virtual void dropLoaded() = 0;
};

using PlainRecords = std::vector<PlainRecord>;

/// Those whose records are plain: they make a text of them and fill them from it.
class PlainSide : public FormatSide {
public:
    explicit PlainSide(const PlainRecords& p_records) : m_records(p_records) {}
    void dropSaved() override { m_text = std::string(); }
    size_t getSize() const override { return m_text.size(); }
    uint64_t getLoadedSum() const override {
        uint64_t sum = 0;
        for (const PlainRecord& record : m_loaded) {
            sum += getSum(record);
        }
        return sum;
    }
    void dropLoaded() override { m_loaded = PlainRecords(); }

protected:
    const PlainRecords& m_records;
    std::string m_text;
    PlainRecords m_loaded;
};

// Each stands in a source of its own. The generated classes are filled beforehand; the tree has branches of so many.
std::unique_ptr<FormatSide> makeProtobuf(const PlainRecords& p_records);
std::unique_ptr<FormatSide> makeProtobufTree(const PlainRecords& p_records, size_t p_numOfLeaves);
std::unique_ptr<FormatSide> makeMsgpack(const PlainRecords& p_records);
std::unique_ptr<FormatSide> makeNlohmann(const PlainRecords& p_records);
/// Ours is written for people to read, with a member on each line. Who wants that of RapidJSON asks for it; the text
/// without blanks is two thirds of it.
std::unique_ptr<FormatSide> makeRapidJson(const PlainRecords& p_records, bool p_indented);
std::unique_ptr<FormatSide> makePugixml(const PlainRecords& p_records);

} // namespace zyr::bench
