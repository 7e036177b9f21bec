#include "tests/host/engine/calls.h"

namespace {

using namespace zentrix::host;
using support::number;

TEST(Tags, AreConvertedToTheRequestedType)
{
    struct row
    {
        tag written;
        std::optional<std::int32_t> as_long;
        std::optional<float> as_float;
        std::optional<std::string> as_string;
    };
    const row rows[] = {{std::int32_t{-7}, -7, -7.0f, {}},
                        {2.75f, 2, 2.75f, {}},
                        {3e9f, {}, 3e9f, {}},
                        {1e300, {}, {}, {}},
                        {0.1, 0, 0.1f, {}},
                        {std::string{"12"}, {}, {}, "12"},
                        {memory_tag_group::make_group(), {}, {}, {}}};
    const auto group = memory_tag_group::make_group();
    for (const auto& r : rows) {
        group->write("key", r.written);
        EXPECT_EQ(group->read_long("key"), r.as_long) << text_of(r.written);
        EXPECT_EQ(group->read_float("key"), r.as_float) << text_of(r.written);
        EXPECT_EQ(group->read_string("key"), r.as_string) << text_of(r.written);
    }
    EXPECT_FALSE(group->read_long("Key"));
}

TEST(Tags, AreReachedByPathsThroughGroupsAndLists)
{
    const auto root = memory_tag_group::make_group();
    std::string log;
    root->on_write(
        [&](std::string_view path, const tag& value) { log += std::string{path} + "=" + text_of(value) + "\n"; });
    root->write("a:b:c", 0.25f);
    root->write("list", memory_tag_group::make_list());
    root->write("list:[0]", std::int32_t{5});
    root->write("list:[1]:name", std::string{"x"});
    root->write("list:[0]", std::int32_t{6});
    EXPECT_EQ(log, "a:b:c=0.25\nlist=tag list of 0\nlist:[0]=5\nlist:[1]:name=\"x\"\nlist:[0]=6\n");
    EXPECT_EQ(root->read_float("a:b:c"), 0.25f);
    EXPECT_EQ(root->read_long("list:[0]"), 6);
    for (const auto* missing : {"", ":", "a:", "a:b:c:d", "list:[2]", "list:name", "list:[-1]", "[7]"})
        EXPECT_FALSE(root->find(missing)) << missing;
    EXPECT_EQ(support::message_of([&] { root->write("a:b:c:d", std::int32_t{1}); }), "The tag \"c\" is not a group.");
    EXPECT_EQ(support::message_of([&] { root->write("list:[4]", std::int32_t{1}); }),
              "The tag list of 2 has no place for a tag \"[4]\".");
}

TEST(Tags, AreNestedToAnyDepthButNotInThemselves)
{
    std::string path = "a";
    for (int level = 1; level < 400'000; ++level) path += ":a";
    const auto inner = memory_tag_group::make_list(), outer = memory_tag_group::make_group();
    outer->write(path, inner);
    outer->write("twice", inner);
    for (const auto& added : {inner, outer})
        EXPECT_EQ(support::message_of([&] { inner->insert(0, added); }),
                  "A tag group or list cannot contain itself, directly or inside another one.");
    auto list = memory_tag_group::make_list();
    for (int level = 0; level < 400'000; ++level) {
        const auto next = memory_tag_group::make_list();
        for (const std::size_t place : {0, 1}) next->insert(place, list);
        list = next;
    }
}

TEST(TagFunctions, InsertByNumberOrAtTheEnd)
{
    engine host;
    const auto list = memory_tag_group::make_list();
    for (const int place : {99, -1, 0}) {
        const auto group = memory_tag_group::make_group();
        group->write("n", std::int32_t{place});
        host.call("TagGroupInsertTagAsTagGroup", {list, number(place), group});
    }
    EXPECT_EQ(list->read_long("[0]:n"), 0);
    EXPECT_EQ(list->read_long("[1]:n"), 99);
    EXPECT_EQ(list->read_long("[2]:n"), -1);
}

}  // namespace
