#include "macho/format/UnwindFrames.h"

#include <gtest/gtest.h>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {
namespace {

UnwindFunction function(uint64_t begin, uint64_t personality = 0) {
    UnwindFunction made;
    made.begin = begin;
    made.size = 0x20;
    made.personality = personality;
    made.handlers = personality != 0 ? 0x7000 : 0;
    made.instructions = {0x0C, 7, 8};
    return made;
}

// Returns the position of the common part. A description contains the distance to it.
size_t parseCommon(ByteReader bytes, size_t position) {
    return position + 4 - bytes.at<uint32_t>(position + 4);
}

TEST(UnwindFrames, FunctionsAlike_ShareWhatIsCommon) {
    UnwindFrames frames;
    for (const auto& [begin, personality] :
         {std::pair<uint64_t, uint64_t>{0x1000, 0}, {0x2000, 0x99}, {0x3000, 0}})
        frames.add(function(begin, personality));
    const std::vector<uint8_t> bytes = frames.take();
    const ByteReader reader(bytes.data(), bytes.size());
    const std::vector<size_t>& positions = frames.positions();
    ASSERT_EQ(positions.size(), 3u);
    EXPECT_EQ(parseCommon(reader, positions[0]), 0u);
    EXPECT_EQ(parseCommon(reader, positions[2]), 0u);
    EXPECT_GT(parseCommon(reader, positions[1]), 0u);
    EXPECT_EQ(reader.at<uint32_t>(4), 0u) << "what is common describes no function";
}

TEST(UnwindFrames, ADescription_HasPlaceHandlersAndInstructions) {
    UnwindFrames frames;
    frames.add(function(0x123456789A, 0x99));
    const std::vector<uint8_t> bytes = frames.take();
    ByteReader reader(bytes.data(), bytes.size());
    reader.moveTo(frames.positions()[0] + 8);
    EXPECT_EQ(reader.next<uint64_t>(), 0x123456789Au);
    EXPECT_EQ(reader.next<uint64_t>(), 0x20u);
    EXPECT_EQ(reader.nextUnsignedLeb(), 8u);
    EXPECT_EQ(reader.next<uint64_t>(), 0x7000u);
    EXPECT_EQ(reader.next<uint8_t>(), 0x0C);
}

TEST(UnwindFrames, Descriptions_FollowEachOtherToAnEnd) {
    UnwindFrames frames;
    frames.add(function(0x1000));
    frames.add(function(0x2000, 0x99));
    const std::vector<uint8_t> bytes = frames.take();
    ByteReader reader(bytes.data(), bytes.size());
    size_t count = 0;
    for (uint32_t size = reader.next<uint32_t>(); size != 0; size = reader.next<uint32_t>(), ++count) {
        EXPECT_EQ((size + 4) % 8, 0u);
        reader.moveTo(reader.position() + size);
    }
    EXPECT_EQ(count, 4u);
    EXPECT_TRUE(reader.isAtEnd());
}

}  // namespace
}  // namespace dovrel::macho
