// What holds for the full description of any error, tried on generated ones.

#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace qrv {

namespace {

/// Values without line breaks in their texts, so that every line of a description is one of its own.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    NSError error(int depth) {
        const NSError made =
            NSError::errorWithDomain_code_userInfo(word(), below(2000) - 1000, dictionary(depth));
        return depth > 0 && below(2) == 0 ? qrvErrorBySettingUnderlyingError(made, error(depth - 1)) : made;
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

    NSString word() {
        std::u16string text;
        for (int length = 1 + below(8); length > 0; --length) {
            text.push_back(static_cast<char16_t>(u'a' + below(26)));
        }
        return text;
    }

    id value(int depth) {
        switch (below(depth > 0 ? 6 : 3)) {
        case 0:
            return word();
        case 1:
            return NSNumber::numberWithInteger(below(100));
        case 2:
            return NSNull::null();
        case 3:
            return array(depth - 1);
        case 4:
            return dictionary(depth - 1);
        default:
            return error(depth - 1);
        }
    }

    NSArray array(int depth) {
        std::vector<id> elements;
        for (int count = 1 + below(3); count > 0; --count) elements.push_back(value(depth));
        return NSArray(std::move(elements));
    }

    NSDictionary dictionary(int depth) {
        NSMutableDictionary entries;
        for (int count = 1 + below(4); count > 0; --count) entries.setObject_forKey(value(depth), word());
        return std::move(entries).copy();
    }

    std::mt19937 random_;
};

id reversed(const id& value);

/// The same content with the entries set in the opposite order.
NSDictionary reversedEntries(const NSDictionary& dictionary) {
    NSMutableDictionary entries;
    for (auto it = dictionary.entries().rbegin(); it != dictionary.entries().rend(); ++it) {
        entries.setObject_forKey(reversed(it->second), it->first);
    }
    return std::move(entries).copy();
}

id reversed(const id& value) {
    if (const NSDictionary dictionary = as<NSDictionary>(value)) return reversedEntries(dictionary);
    if (const NSError error = as<NSError>(value)) {
        return NSError::errorWithDomain_code_userInfo(error.domain(), error.code(),
                                                      reversedEntries(error.userInfo()));
    }
    if (const NSArray array = as<NSArray>(value)) {
        std::vector<id> elements;
        for (const id& element : array) elements.push_back(reversed(element));
        return NSArray(std::move(elements));
    }
    return value;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

bool endsInAny(const std::string& line, std::initializer_list<const char*> endings) {
    return std::any_of(endings.begin(), endings.end(), [&](const char* e) { return line.ends_with(e); });
}

class DescriptionOfAnyError : public testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(DescriptionOfAnyError, IsTheSameOnEveryRunAndForTheSameContentInAnyOrder) {
    const NSError error = Generator(GetParam()).error(4);
    const NSString text = qrvFullDescription(error);
    EXPECT_EQ(qrvFullDescription(error), text);
    EXPECT_EQ(qrvFullDescription(Generator(GetParam()).error(4)), text);
    EXPECT_EQ(qrvFullDescription(as<NSError>(reversed(error))), text);
}

TEST_P(DescriptionOfAnyError, EndsEveryLineByOpeningByACommaOrBeforeAClosingBracket) {
    const std::vector<std::string> lines = linesOf(qrvFullDescription(Generator(GetParam()).error(4)).utf8());
    ASSERT_GE(lines.size(), 3u);
    EXPECT_TRUE(lines.front().starts_with("<NSError Domain="));
    EXPECT_TRUE(lines.front().ends_with(" UserInfo={"));
    EXPECT_EQ(lines.back(), "    }>");
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        const std::size_t start = lines[i + 1].find_first_not_of(' ');
        ASSERT_NE(start, std::string::npos);
        const bool closesNext = lines[i + 1][start] == '}' || lines[i + 1][start] == ')';
        EXPECT_TRUE(endsInAny(lines[i], {"{", "(", ","}) || closesNext) << lines[i];
        EXPECT_FALSE(lines[i].ends_with(",") && closesNext) << lines[i];
    }
}

TEST_P(DescriptionOfAnyError, IndentsByFourBlanksALevelAndClosesAtTheDepthOfTheContents) {
    const std::vector<std::string> lines = linesOf(qrvFullDescription(Generator(GetParam()).error(4)).utf8());
    // The depth of the contents of every bracket that is open.
    std::vector<std::size_t> depths;
    std::size_t depth = 0;
    for (const std::string& line : lines) {
        const std::size_t start = line.find_first_not_of(' ');
        ASSERT_NE(start, std::string::npos);
        EXPECT_EQ(start, depth) << line;
        if (line[start] == '}' || line[start] == ')') {
            ASSERT_FALSE(depths.empty());
            depths.pop_back();
            depth = depths.empty() ? 0 : depths.back();
        } else if (endsInAny(line, {"{", "("})) {
            // A quoted underlying error is indented once by its own braces and once more as a text.
            depth += line.find("= \"<NSError") != std::string::npos ? 8 : 4;
            depths.push_back(depth);
        }
    }
    EXPECT_TRUE(depths.empty());
}

INSTANTIATE_TEST_SUITE_P(NSErrorQRV, DescriptionOfAnyError, testing::Range(1u, 60u));

} // namespace qrv
