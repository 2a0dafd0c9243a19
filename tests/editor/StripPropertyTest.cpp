#include "editor/strip/ThumbnailStrip.h"

#include <gmock/gmock.h>

#include <random>

namespace tallowbay {
namespace {

namespace fs = std::filesystem;

// The strip once more, in the plainest way: parallel lists, and a stack of views of which each is a
// cell that knows its index, or a divider.
struct PlainStrip {
    struct View {
        bool divider = true;
        std::size_t cell = 0;
    };

    void add(const fs::path& url)
    {
        if (pendingDivider) {
            pendingDivider = false;
            insertDivider();
        }
        badges.push_back(urls.size() - batchStart + 1);
        stack.insert(
            stack.begin() + static_cast<std::ptrdiff_t>(insertPosition), View{false, urls.size()});
        ++insertPosition;
        urls.push_back(url);
        checked.push_back(true);
    }

    void insertDivider()
    {
        if (urls.empty())
            return;
        checked.assign(checked.size(), false);
        stack.insert(stack.begin(), View{});
        insertPosition = 0;
        batchStart = urls.size();
    }

    void remove(const fs::path& path)
    {
        const std::size_t before = urls.size();
        for (std::size_t index = urls.size(); index-- > 0;) {
            if (urls[index] == path)
                removeAt(index);
        }
        if (urls.size() == before)
            return;
        cleanUp();
        batchStart = std::min(batchStart, urls.size());
        insertPosition = std::min(insertPosition, stack.size());
    }

    void removeAt(std::size_t index)
    {
        const auto at = static_cast<std::ptrdiff_t>(index);
        urls.erase(urls.begin() + at);
        checked.erase(checked.begin() + at);
        badges.erase(badges.begin() + at);
        std::erase_if(stack, [&](const View& v) { return !v.divider && v.cell == index; });
        for (View& view : stack) {
            if (!view.divider && view.cell > index)
                --view.cell;
        }
    }

    void cleanUp()
    {
        const std::vector<View> seen = stack;
        stack.clear();
        for (std::size_t p = 0; p < seen.size(); ++p) {
            const bool first = p == 0;
            const bool last = p == seen.size() - 1;
            if (!seen[p].divider || (!first && !last && !seen[p + 1].divider))
                stack.push_back(seen[p]);
        }
    }

    std::vector<fs::path> urls;
    std::vector<bool> checked;
    std::vector<std::size_t> badges;
    std::vector<View> stack;
    std::size_t batchStart = 0;
    std::size_t insertPosition = 0;
    bool pendingDivider = false;
};

std::string describe(const PlainStrip& strip)
{
    std::string text;
    for (const auto& view : strip.stack) {
        if (view.divider)
            text += "| ";
        else
            text += std::to_string(view.cell) + strip.urls[view.cell].string()
                + (strip.checked[view.cell] ? "+" : "-") + std::to_string(strip.badges[view.cell])
                + " ";
    }
    return text;
}

std::string describe(const ThumbnailStrip& strip)
{
    std::string text;
    for (const auto& slot : strip.slots()) {
        if (!slot)
            text += "| ";
        else
            text += std::to_string(*slot) + strip.at(*slot).url.string()
                + (strip.at(*slot).checked ? "+" : "-")
                + std::to_string(strip.at(*slot).badgeNumber) + " ";
    }
    return text;
}

// One random step on both.
class RandomUse {
public:
    explicit RandomUse(unsigned seed)
        : random(seed)
    {
    }

    void step()
    {
        switch (pick(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return addURL();
        case 4:
            strip.pendingDivider = plain.pendingDivider = !plain.urls.empty();
            return;
        case 5:
        case 6:
        case 7:
            return removeURL();
        case 8:
            return toggle();
        case 9:
            return uncheckLast();
        case 10:
            EXPECT_EQ(strip.uncheckAll(), std::ranges::count(plain.checked, true) > 0);
            plain.checked.assign(plain.checked.size(), false);
            return;
        default:
            return saveAndRestore();
        }
    }

    ThumbnailStrip strip;
    PlainStrip plain;

private:
    std::size_t pick(std::size_t below) { return random() % below; }
    fs::path anyPath() { return "/" + std::to_string(pick(40)); }

    void addURL()
    {
        const fs::path url = anyPath();
        plain.add(url);
        if (std::exchange(strip.pendingDivider, false))
            strip.insertBatchDivider();
        EXPECT_EQ(strip.addURL(url), plain.urls.size() - 1);
    }
    void removeURL()
    {
        const fs::path url = anyPath();
        const bool there = std::ranges::count(plain.urls, url) > 0;
        plain.remove(url);
        EXPECT_EQ(strip.remove({url}), there);
    }
    void toggle()
    {
        if (plain.urls.empty())
            return;
        const std::size_t index = pick(plain.urls.size());
        plain.checked[index] = !plain.checked[index];
        strip.at(index).checked = plain.checked[index];
    }
    void uncheckLast()
    {
        const auto last = std::find(plain.checked.rbegin(), plain.checked.rend(), true);
        EXPECT_EQ(strip.uncheckLast().has_value(), last != plain.checked.rend());
        if (last != plain.checked.rend())
            *last = false;
    }

    // A strip that was saved and restored shows the same, unchecked and numbered anew.
    void saveAndRestore()
    {
        ThumbnailStrip restored;
        restored.restore(strip.session(), [](const auto&) { return true; });
        auto expected = strip.session();
        for (auto& item : expected)
            item.checked = false;
        EXPECT_EQ(restored.session(), expected);
        EXPECT_THAT(restored.checkedURLs(), testing::IsEmpty());
        EXPECT_EQ(restored.pendingDivider, !restored.empty());
    }

    std::mt19937 random;
};

void expectSoundOrder(const ThumbnailStrip& strip)
{
    std::set<std::size_t> seen;
    for (const auto& slot : strip.slots()) {
        if (slot)
            EXPECT_TRUE(seen.insert(*slot).second && *slot < strip.size());
    }
    EXPECT_EQ(seen.size(), strip.size());
    EXPECT_EQ(strip.urlsForClipboard().empty(), strip.empty());
}

class StripPropertyTest : public testing::TestWithParam<unsigned> { };

// A hundred thousand steps in all.
TEST_P(StripPropertyTest, RandomStepsLeaveItAsPlainListsWould)
{
    RandomUse use(GetParam());
    for (int step = 0; step < 10'000 && !HasFailure(); ++step) {
        use.step();
        expectSoundOrder(use.strip);
        ASSERT_EQ(describe(use.strip), describe(use.plain)) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StripPropertyTest, testing::Range(1u, 11u));

} // namespace
} // namespace tallowbay
