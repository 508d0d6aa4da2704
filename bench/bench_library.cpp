// The common library beside what it stands in for: String and HashMap beside the standard ones, the digest and
// compression fronts beside the bare libraries. Both sides use this program's heap.
#include "bench_versus.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_sorted_map.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/digest/zyr_sha1.h"
#include "zyr_common/digest/zyr_xxhash.h"

#include <benchmark/benchmark.h>
#include <list>
#include <lz4.h>
#include <map>
#include <miniz.h>
#include <string>
#include <unordered_map>
#include <vector>
#include <xxhash.h>

#if __has_include(<tsl/ordered_map.h>)
#include <tsl/ordered_map.h>
#endif

using namespace zyr;

static const char SHORT_TEXT[] = "FFmpegFrameEncoder";
static const char LONG_TEXT[] =
    "a path of a hundred bytes and some more, as directories of sessions and of resources have in practice/";

/// The texts of keys as class registries hold them.
static std::vector<std::string> makeKeys(size_t p_count) {
    std::vector<std::string> keys;
    for (size_t i = 0; i < p_count; i++) {
        keys.push_back("HashMapOfObjects{" + std::to_string(i) + "}");
    }
    return keys;
}

template <typename Text> static std::vector<Text> makeTexts(size_t p_count) {
    std::vector<Text> texts;
    for (const std::string& key : makeKeys(p_count)) {
        texts.push_back(Text(key.c_str()));
    }
    return texts;
}

// ---- text ----------------------------------------------------------------------------------------------------------

template <typename Text> static void constructShort(benchmark::State& p_state) {
    for (auto _ : p_state) {
        Text text(SHORT_TEXT);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK_TEMPLATE(constructShort, String);
BENCHMARK_TEMPLATE(constructShort, std::string);

template <typename Text> static void copyLong(benchmark::State& p_state) {
    const Text source(LONG_TEXT);
    for (auto _ : p_state) {
        Text text(source);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK_TEMPLATE(copyLong, String);
BENCHMARK_TEMPLATE(copyLong, std::string);

/// The share of the standard string's speed, both in one run.
static void appendCharacterVersus(benchmark::State& p_state) {
    const size_t count = size_t(p_state.range(0));
    bench::compareSides(p_state, count,
                        {{"zyr",
                          [count] {
                              String text;
                              for (size_t i = 0; i < count; i++) {
                                  text.pushBackAsciiCharacter(char('a' + (i & 15)));
                              }
                              benchmark::DoNotOptimize(text);
                          }},
                         {"std", [count] {
                              std::string text;
                              for (size_t i = 0; i < count; i++) {
                                  text.push_back(char('a' + (i & 15)));
                              }
                              benchmark::DoNotOptimize(text);
                          }}});
}
BENCHMARK(appendCharacterVersus)->Arg(40)->Arg(1000)->Arg(1000000);

static void appendTextVersus(benchmark::State& p_state) {
    bench::compareSides(p_state, 1000,
                        {{"zyr",
                          [] {
                              String text;
                              for (int i = 0; i < 1000; i++) {
                                  text += "key=\"value\" ";
                              }
                              benchmark::DoNotOptimize(text);
                          }},
                         {"std", [] {
                              std::string text;
                              for (int i = 0; i < 1000; i++) {
                                  text += "key=\"value\" ";
                              }
                              benchmark::DoNotOptimize(text);
                          }}});
}
BENCHMARK(appendTextVersus);

static void copyLongVersus(benchmark::State& p_state) {
    const std::string long_text = p_state.range(0) == 0 ? LONG_TEXT : std::string(size_t(p_state.range(0)), 'x');
    const String source(long_text);
    bench::compareSides(p_state, 1,
                        {{"zyr",
                          [&] {
                              String text(source);
                              benchmark::DoNotOptimize(text);
                          }},
                         {"std", [&] {
                              std::string text(long_text);
                              benchmark::DoNotOptimize(text);
                          }}});
}
BENCHMARK(copyLongVersus)->Arg(0)->Arg(1000)->Arg(100000);

template <typename Text> static void append(benchmark::State& p_state) {
    for (auto _ : p_state) {
        Text text;
        for (int i = 0; i < 1000; i++) {
            text += "key=\"value\" ";
        }
        benchmark::DoNotOptimize(text);
    }
    p_state.SetItemsProcessed(p_state.iterations() * 1000);
}
BENCHMARK_TEMPLATE(append, String);
BENCHMARK_TEMPLATE(append, std::string);

template <typename Text> static void compareEqual(benchmark::State& p_state) {
    const Text first(LONG_TEXT);
    const Text second(LONG_TEXT);
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(first == second);
    }
}
BENCHMARK_TEMPLATE(compareEqual, String);
BENCHMARK_TEMPLATE(compareEqual, std::string);

// ---- maps ----------------------------------------------------------------------------------------------------------

typedef HashMap<String, size_t> TextMap;
typedef std::unordered_map<std::string, size_t> StdTextMap;
typedef HashMap<unsigned int, size_t> NumberMap;
typedef std::unordered_map<unsigned int, size_t> StdNumberMap;

template <typename K> static void put(HashMap<K, size_t>& p_map, const K& p_key, size_t p_value) {
    p_map.pushBack(p_key, p_value, nullptr);
}
template <typename K> static void put(std::unordered_map<K, size_t>& p_map, const K& p_key, size_t p_value) {
    p_map.emplace(p_key, p_value);
}
template <typename K> static void drop(HashMap<K, size_t>& p_map, const K& p_key) {
    p_map.remove(p_key);
}
template <typename K> static void drop(std::unordered_map<K, size_t>& p_map, const K& p_key) {
    p_map.erase(p_key);
}

#if __has_include(<tsl/ordered_map.h>)
template <typename K> static void put(tsl::ordered_map<K, size_t>& p_map, const K& p_key, size_t p_value) {
    p_map.insert({p_key, p_value});
}
template <typename K> static void drop(tsl::ordered_map<K, size_t>& p_map, const K& p_key) {
    p_map.erase(p_key);
}
#endif

static void makeKeysOf(size_t p_count, std::vector<String>& p_keys) {
    p_keys = makeTexts<String>(p_count);
}
static void makeKeysOf(size_t p_count, std::vector<std::string>& p_keys) {
    p_keys = makeTexts<std::string>(p_count);
}
static void makeKeysOf(size_t p_count, std::vector<unsigned int>& p_keys) {
    for (size_t i = 0; i < p_count; i++) {
        p_keys.push_back((unsigned int)(i * 2654435761u));
    }
}

template <typename Map, typename K> static void fillMap(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(size_t(p_state.range(0)), keys);
    for (auto _ : p_state) {
        Map map;
        for (size_t i = 0; i < keys.size(); i++) {
            put(map, keys[i], i);
        }
        benchmark::DoNotOptimize(map);
    }
    p_state.SetItemsProcessed(p_state.iterations() * p_state.range(0));
}
BENCHMARK_TEMPLATE(fillMap, TextMap, String)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(fillMap, StdTextMap, std::string)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(fillMap, NumberMap, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(fillMap, StdNumberMap, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);

template <typename Map, typename K> static void findInMap(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(size_t(p_state.range(0)), keys);
    Map map;
    for (size_t i = 0; i < keys.size(); i++) {
        put(map, keys[i], i);
    }
    for (auto _ : p_state) {
        for (const K& key : keys) {
            benchmark::DoNotOptimize(map.find(key));
        }
    }
    p_state.SetItemsProcessed(p_state.iterations() * p_state.range(0));
}
BENCHMARK_TEMPLATE(findInMap, TextMap, String)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(findInMap, StdTextMap, std::string)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(findInMap, NumberMap, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(findInMap, StdNumberMap, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);

template <typename K> static void fillVersus(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(size_t(p_state.range(0)), keys);
    typedef std::conditional_t<std::is_same_v<K, String>, std::string, K> StdKey;
    std::vector<StdKey> stdKeys;
    makeKeysOf(size_t(p_state.range(0)), stdKeys);
    bench::compareSides(p_state, keys.size(),
                        {{"zyr",
                          [&] {
                              HashMap<K, size_t> map;
                              for (size_t i = 0; i < keys.size(); i++) {
                                  map.pushBack(keys[i], i, nullptr);
                              }
                              benchmark::DoNotOptimize(map);
                          }},
                         {"std", [&] {
                              std::unordered_map<StdKey, size_t> map;
                              for (size_t i = 0; i < stdKeys.size(); i++) {
                                  map.emplace(stdKeys[i], i);
                              }
                              benchmark::DoNotOptimize(map);
                          }}});
}
BENCHMARK_TEMPLATE(fillVersus, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(fillVersus, String)->Arg(10)->Arg(1000)->Arg(100000);

template <typename K> static void findVersus(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(size_t(p_state.range(0)), keys);
    typedef std::conditional_t<std::is_same_v<K, String>, std::string, K> StdKey;
    std::vector<StdKey> stdKeys;
    makeKeysOf(size_t(p_state.range(0)), stdKeys);
    HashMap<K, size_t> map;
    std::unordered_map<StdKey, size_t> stdMap;
    for (size_t i = 0; i < keys.size(); i++) {
        map.pushBack(keys[i], i, nullptr);
        stdMap.emplace(stdKeys[i], i);
    }
    bench::compareSides(p_state, keys.size(),
                        {{"zyr",
                          [&] {
                              for (const K& key : keys) {
                                  benchmark::DoNotOptimize(map.find(key));
                              }
                          }},
                         {"std", [&] {
                              for (const StdKey& key : stdKeys) {
                                  benchmark::DoNotOptimize(stdMap.find(key));
                              }
                          }}});
}
BENCHMARK_TEMPLATE(findVersus, unsigned int)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(findVersus, String)->Arg(10)->Arg(1000)->Arg(100000);

template <typename Map, typename K> static void iterateMap(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(1000, keys);
    Map map;
    for (size_t i = 0; i < keys.size(); i++) {
        put(map, keys[i], i);
    }
    for (auto _ : p_state) {
        for (auto& entry : map) {
            benchmark::DoNotOptimize(&entry);
        }
    }
    p_state.SetItemsProcessed(p_state.iterations() * 1000);
}
BENCHMARK_TEMPLATE(iterateMap, TextMap, String);
BENCHMARK_TEMPLATE(iterateMap, StdTextMap, std::string);

template <typename Map, typename K> static void removeAndAdd(benchmark::State& p_state) {
    std::vector<K> keys;
    makeKeysOf(1000, keys);
    Map map;
    for (size_t i = 0; i < keys.size(); i++) {
        put(map, keys[i], i);
    }
    size_t i = 0;
    for (auto _ : p_state) {
        drop(map, keys[i]);
        put(map, keys[i], i);
        i = (i + 1) % keys.size();
    }
}
BENCHMARK_TEMPLATE(removeAndAdd, TextMap, String);
BENCHMARK_TEMPLATE(removeAndAdd, StdTextMap, std::string);

// The peer that keeps the order of insertion, as HashMap does.
#if __has_include(<tsl/ordered_map.h>)
typedef tsl::ordered_map<std::string, size_t> OrderedTextMap;
BENCHMARK_TEMPLATE(fillMap, OrderedTextMap, std::string)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(findInMap, OrderedTextMap, std::string)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK_TEMPLATE(iterateMap, OrderedTextMap, std::string);
BENCHMARK_TEMPLATE(removeAndAdd, OrderedTextMap, std::string);
#endif

static void fillSortedMap(benchmark::State& p_state) {
    for (auto _ : p_state) {
        SortedMap<unsigned long, unsigned long> map;
        for (unsigned long i = 0; i < 1000; i++) {
            map.insert(i * 2654435761u % 4096, i);
        }
        benchmark::DoNotOptimize(map);
    }
}
BENCHMARK(fillSortedMap);

static void fillStdMap(benchmark::State& p_state) {
    for (auto _ : p_state) {
        std::map<unsigned long, unsigned long> map;
        for (unsigned long i = 0; i < 1000; i++) {
            map[i * 2654435761u % 4096] = i;
        }
        benchmark::DoNotOptimize(map);
    }
}
BENCHMARK(fillStdMap);

// ---- arrays and lists ----------------------------------------------------------------------------------------------

static void pushIntoArray(benchmark::State& p_state) {
    for (auto _ : p_state) {
        Array<int> array;
        array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
        for (int i = 0; i < 1000; i++) {
            array.pushBack(i);
        }
        benchmark::DoNotOptimize(array);
    }
}
BENCHMARK(pushIntoArray);

static void pushIntoVector(benchmark::State& p_state) {
    for (auto _ : p_state) {
        std::vector<int> vector;
        for (int i = 0; i < 1000; i++) {
            vector.push_back(i);
        }
        benchmark::DoNotOptimize(vector);
    }
}
BENCHMARK(pushIntoVector);

static void pushIntoList(benchmark::State& p_state) {
    for (auto _ : p_state) {
        List<int> list;
        for (int i = 0; i < 1000; i++) {
            list.pushBack(i);
        }
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(pushIntoList);

static void pushIntoStdList(benchmark::State& p_state) {
    for (auto _ : p_state) {
        std::list<int> list;
        for (int i = 0; i < 1000; i++) {
            list.push_back(i);
        }
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(pushIntoStdList);

// ---- digests and compression ---------------------------------------------------------------------------------------

/// Data that compresses about as well as serialized objects do.
static const std::string& getPayload() {
    static const std::string payload = [] {
        std::string text;
        for (size_t i = 0; text.size() < 1 << 20; i++) {
            text += "{\"width\":" + std::to_string(i * 7919 % 4096) + ",\"height\":" + std::to_string(i % 2160) + "}\n";
        }
        return text;
    }();
    return payload;
}

static void setBytes(benchmark::State& p_state) {
    p_state.SetBytesProcessed(p_state.iterations() * int64_t(getPayload().size()));
}

static void sha1Front(benchmark::State& p_state) {
    unsigned char digest[SHA1_DIGEST_SIZE];
    for (auto _ : p_state) {
        zyr_sha1(getPayload().data(), getPayload().size(), digest);
        benchmark::DoNotOptimize(digest);
    }
    setBytes(p_state);
}
BENCHMARK(sha1Front);

static void xxHash64Front(benchmark::State& p_state) {
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(zyr_xxHash64(getPayload().data(), getPayload().size(), 7));
    }
    setBytes(p_state);
}
BENCHMARK(xxHash64Front);

static void xxHash64Bare(benchmark::State& p_state) {
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(XXH64(getPayload().data(), getPayload().size(), 7));
    }
    setBytes(p_state);
}
BENCHMARK(xxHash64Bare);

typedef size_t (*CompressFunction)(const void*, size_t, Array<unsigned char>&, bool_t);
typedef size_t (*DecompressFunction)(const void*, size_t, void*, size_t);

static void compressFront(benchmark::State& p_state, CompressFunction p_compress) {
    Array<unsigned char> packed;
    packed.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(p_compress(getPayload().data(), getPayload().size(), packed, 0));
    }
    setBytes(p_state);
}
BENCHMARK_CAPTURE(compressFront, lz4, zyr_compressLZ4);
BENCHMARK_CAPTURE(compressFront, zip, zyr_compressZIP);

static size_t compressBareLz4(std::vector<unsigned char>& p_packed) {
    const int size = int(getPayload().size());
    p_packed.resize(size_t(LZ4_compressBound(size)));
    return size_t(LZ4_compress_default(getPayload().data(), reinterpret_cast<char*>(p_packed.data()), size,
                                       int(p_packed.size())));
}

static size_t compressBareZip(std::vector<unsigned char>& p_packed) {
    p_packed.resize(mz_compressBound(getPayload().size()));
    mz_ulong size = p_packed.size();
    mz_compress(p_packed.data(), &size, reinterpret_cast<const unsigned char*>(getPayload().data()),
                getPayload().size());
    return size;
}

static void compressBare(benchmark::State& p_state, size_t (*p_compress)(std::vector<unsigned char>&)) {
    std::vector<unsigned char> packed;
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(p_compress(packed));
    }
    setBytes(p_state);
}
BENCHMARK_CAPTURE(compressBare, lz4, compressBareLz4);
BENCHMARK_CAPTURE(compressBare, zip, compressBareZip);

static void decompressFront(benchmark::State& p_state, CompressFunction p_compress, DecompressFunction p_decompress) {
    Array<unsigned char> packed;
    const size_t packedSize = p_compress(getPayload().data(), getPayload().size(), packed, 1);
    std::vector<unsigned char> data(getPayload().size());
    for (auto _ : p_state) {
        benchmark::DoNotOptimize(p_decompress(packed.getData(), packedSize, data.data(), data.size()));
    }
    setBytes(p_state);
}
BENCHMARK_CAPTURE(decompressFront, lz4, zyr_compressLZ4, zyr_decompressLZ4);
BENCHMARK_CAPTURE(decompressFront, zip, zyr_compressZIP, zyr_decompressZIP);

static size_t decompressBareLz4(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    return size_t(LZ4_decompress_safe(static_cast<const char*>(p_source), static_cast<char*>(p_destination),
                                      int(p_size), int(p_capacity)));
}

static size_t decompressBareZip(const void* p_source, size_t p_size, void* p_destination, size_t p_capacity) {
    mz_ulong size = p_capacity;
    mz_uncompress(static_cast<unsigned char*>(p_destination), &size, static_cast<const unsigned char*>(p_source),
                  p_size);
    return size;
}
BENCHMARK_CAPTURE(decompressFront, bareLz4, zyr_compressLZ4, decompressBareLz4);
BENCHMARK_CAPTURE(decompressFront, bareZip, zyr_compressZIP, decompressBareZip);

// ---- pictures
// --------------------------------------------------------------------------------------------------------

static void clearImage(benchmark::State& p_state) {
    std::vector<uint8_t> pixels(size_t(1920) * 1080 * 4);
    const ColorRGBA<float> color(0.2f, 0.4f, 0.6f, 1.0f);
    for (auto _ : p_state) {
        zyr_clearImageDataWithColorRGBA(1920, 1080, 1920 * 4, PixelFormatEnum(500), pixels.data(), color);
        benchmark::ClobberMemory();
    }
    p_state.SetBytesProcessed(p_state.iterations() * int64_t(pixels.size()));
}
BENCHMARK(clearImage);

static void clearMemory(benchmark::State& p_state) {
    std::vector<uint8_t> pixels(size_t(1920) * 1080 * 4);
    for (auto _ : p_state) {
        memset(pixels.data(), 0x33, pixels.size());
        benchmark::ClobberMemory();
    }
    p_state.SetBytesProcessed(p_state.iterations() * int64_t(pixels.size()));
}
BENCHMARK(clearMemory);
