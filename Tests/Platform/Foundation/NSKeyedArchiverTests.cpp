#include "Platform/Foundation/NSKeyedArchiver.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/NSURL.h"
#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSString text(const char* bytes) {
    return NSString::stringWithUTF8String(bytes);
}

NSNumber integer(long long value) {
    return NSNumber::numberWithInteger(value);
}

NSError error(const NSDictionary& userInfo) {
    return NSError::errorWithDomain_code_userInfo(u"org.example.domain", -42, userInfo);
}

id nestedAround(id object, int depth) {
    for (int i = 0; i < depth; ++i) object = NSArray({object});
    return object;
}

id nested(int depth) {
    return nestedAround(NSArray::array(), depth - 1);
}

struct ArchiveCase {
    const char* name;
    id object;
};

void PrintTo(const ArchiveCase& test, std::ostream* out) {
    *out << test.name;
}

class Archivable : public testing::TestWithParam<ArchiveCase> {};

class NotArchivable : public testing::TestWithParam<ArchiveCase> {};

/// A payload that no archiver knows.
class Unknown : public Object {};

class OwnError final : public NSErrorObject {
public:
    using NSErrorObject::NSErrorObject;

    static const ClassInfo& classInfo() {
        static const ClassInfo info{"OwnError", &NSError::classInfo()};
        return info;
    }

    const ClassInfo& objectClass() const override { return classInfo(); }
};

} // namespace

TEST_P(Archivable, ComesBackTheSame) {
    const NSData data = NSKeyedArchiver::archivedDataWithRootObject(GetParam().object);
    ASSERT_TRUE(data);
    EXPECT_EQ(canonicalText(NSKeyedUnarchiver::unarchiveObjectWithData(data)),
              canonicalText(GetParam().object));
}

TEST_P(Archivable, ReadsTheSameByAnIndependentReader) {
    const TemporaryFolder folder;
    const NSData data = NSKeyedArchiver::archivedDataWithRootObject(GetParam().object);
    ASSERT_TRUE(data);
    const std::string path = folder.write("archive", data.bytes()).utf8();
    EXPECT_EQ(runPlistsHelper("archive " + path), canonicalText(GetParam().object));
}

INSTANTIATE_TEST_SUITE_P(
    Objects, Archivable,
    testing::Values(
        ArchiveCase{"String", text("é\U0001F600")}, ArchiveCase{"EmptyString", text("")},
        ArchiveCase{"Integer", integer(-5)}, ArchiveCase{"Real", NSNumber::numberWithDouble(0.1)},
        ArchiveCase{"True", NSNumber::numberWithBool(true)},
        ArchiveCase{"Data", NSData(std::string("\0\xFF", 2))},
        ArchiveCase{"Date", NSDate::dateWithTimeIntervalSinceReferenceDate(0.25)},
        ArchiveCase{"URL", NSURL::URLWithString(u"http://example.com/a%20b?c#d")},
        ArchiveCase{"Null", NSNull::null()}, ArchiveCase{"EmptyArray", NSArray::array()},
        ArchiveCase{"Array", NSArray({text("a"), integer(1), NSNull::null(), NSArray({text("a")})})},
        ArchiveCase{"EmptyDictionary", NSDictionary::dictionary()},
        ArchiveCase{"Dictionary", NSDictionary{{text("b"), integer(1)}, {text("a"), NSArray::array()}}},
        ArchiveCase{"DictionaryWithNumbersAsKeys", NSDictionary{{integer(1), text("one")}}},
        ArchiveCase{"ErrorWithEmptyUserInfo", error({})},
        ArchiveCase{"Error",
                    error(NSDictionary{{NSString(NSLocalizedDescriptionKey), text("It failed.")},
                                       {NSString(NSURLErrorKey), NSURL::URLWithString(u"file:///a")}})},
        ArchiveCase{"ErrorInError", error(NSDictionary{{NSString(NSUnderlyingErrorKey), error({})}})}),
    [](const auto& test) { return test.param.name; });

TEST_P(NotArchivable, GivesNil) {
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(GetParam().object));
}

INSTANTIATE_TEST_SUITE_P(
    Objects, NotArchivable,
    testing::Values(ArchiveCase{"Nil", id()}, ArchiveCase{"Unknown", id(std::make_shared<Unknown>())},
                    ArchiveCase{"Class", Class(NSString::classInfo())},
                    ArchiveCase{"UnknownInArray", NSArray({text("a"), id(std::make_shared<Unknown>())})},
                    ArchiveCase{"UnknownAsValue", NSDictionary{{text("a"), id(std::make_shared<Unknown>())}}},
                    ArchiveCase{"UnknownAsKey", NSDictionary{{id(std::make_shared<Unknown>()), text("a")}}},
                    ArchiveCase{"UnknownInError",
                                error(NSDictionary{{text("a"), id(std::make_shared<Unknown>())}})},
                    ArchiveCase{"NestedTooDeep", nested(600)}),
    [](const auto& test) { return test.param.name; });

TEST(KeyedArchiver, AnErrorWithEmptyUserInfoHoldsAnEmptyDictionaryNotNone) {
    const NSData data = NSKeyedArchiver::archivedDataWithRootObject(error({}));
    const auto archive = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data));
    const auto objects = as<NSArray>(archive.objectForKey(text("$objects")));
    const auto form = as<NSDictionary>(objects.objectAtIndex(1));
    const auto userInfo = as<NSKeyedArchiveUID>(form.objectForKey(text("NSUserInfo")));
    ASSERT_GT(userInfo.value(), 0u);
    const auto dictionary = as<NSDictionary>(objects.objectAtIndex(userInfo.value()));
    EXPECT_EQ(dictionary.objectForKey(text("NS.keys")), NSArray::array());
    EXPECT_EQ(dictionary.objectForKey(text("NS.objects")), NSArray::array());
}

TEST(KeyedArchiver, AnErrorOfAClassOfOnesOwnComesBackAsAPlainOne) {
    const id own(std::make_shared<OwnError>(NSString(u"d"), 7, NSDictionary::dictionary()));
    EXPECT_EQ(own.objectClass(), &OwnError::classInfo());
    const id back =
        NSKeyedUnarchiver::unarchiveObjectWithData(NSKeyedArchiver::archivedDataWithRootObject(own));
    EXPECT_EQ(back.objectClass(), &NSError::classInfo());
    EXPECT_EQ(as<NSError>(back).code(), 7);
}

TEST(KeyedArchiver, ASharedObjectIsArchivedOnceAndComesBackShared) {
    const id shared = NSArray({NSData(std::string(1000, 'x'))});
    const NSData data = NSKeyedArchiver::archivedDataWithRootObject(NSArray({shared, shared}));
    EXPECT_LT(data.length(), 1500u);
    const auto back = as<NSArray>(NSKeyedUnarchiver::unarchiveObjectWithData(data));
    EXPECT_TRUE(back.objectAtIndex(0).isIdenticalTo(back.objectAtIndex(1)));
}

TEST(KeyedArchiver, NestingIsAllowedAsDeepAsInPropertyLists) {
    const id urlInside = nestedAround(NSURL::URLWithString(u"a:b"), 512);
    for (const id& deepest : {nested(512), urlInside}) {
        const NSData data = NSKeyedArchiver::archivedDataWithRootObject(deepest);
        ASSERT_TRUE(data);
        EXPECT_EQ(canonicalText(NSKeyedUnarchiver::unarchiveObjectWithData(data)), canonicalText(deepest));
    }
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(nested(513)));
}

namespace {

using UID = NSKeyedArchiveUID;

id reference(unsigned long long value) {
    return UID::uidWithValue(value);
}

id classNamed(std::vector<id> names) {
    return NSDictionary{{text("$classname"), names.front()}, {text("$classes"), NSArray(names)}};
}

id classNamed(const char* name) {
    return classNamed({text(name), text("NSObject")});
}

NSDictionary archiveOf(std::vector<id> objects) {
    objects.insert(objects.begin(), text("$null"));
    return NSDictionary{{text("$version"), integer(100000)},
                        {text("$archiver"), text("NSKeyedArchiver")},
                        {text("$top"), NSDictionary{{text("root"), reference(1)}}},
                        {text("$objects"), NSArray(std::move(objects))}};
}

NSData bytesOf(const id& plist) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        plist, NSPropertyListBinaryFormat_v1_0, nullptr);
}

std::string unarchived(const NSDictionary& archive) {
    return canonicalText(NSKeyedUnarchiver::unarchiveObjectWithData(bytesOf(archive)));
}

NSDictionary changed(const NSDictionary& archive, const char* key, const id& value) {
    NSMutableDictionary copy = archive.mutableCopy();
    copy.setObject_forKey(value, text(key));
    return std::move(copy).copy();
}

id form(std::vector<std::pair<const char*, id>> parts, unsigned long long classPlace = 2) {
    NSMutableDictionary dictionary;
    for (const auto& [key, value] : parts) dictionary.setObject_forKey(value, text(key));
    dictionary.setObject_forKey(reference(classPlace), text("$class"));
    return std::move(dictionary).copy();
}

struct BadCase {
    const char* name;
    NSDictionary archive;
};

void PrintTo(const BadCase& test, std::ostream* out) {
    *out << test.name;
}

class BadArchiveOf : public testing::TestWithParam<BadCase> {};

/// Many arrays over one long list.
NSDictionary sharedLists() {
    std::vector<id> many(3000, reference(2));
    const NSArray list(std::move(many));
    std::vector<id> objects = {form({{"NS.objects", list}}, 3), text("leaf"), classNamed("NSArray")};
    std::vector<id> all;
    for (unsigned long long i = 4; i < 3004; ++i) {
        objects.push_back(form({{"NS.objects", list}}, 3));
        all.push_back(reference(i));
    }
    objects[0] = form({{"NS.objects", NSArray(std::move(all))}}, 3);
    return archiveOf(std::move(objects));
}

/// Arrays nested one in the other.
NSDictionary chain(unsigned long long length) {
    std::vector<id> objects;
    for (unsigned long long i = 0; i < length; ++i) {
        objects.push_back(form(
            {{"NS.objects", i + 1 < length ? NSArray({reference(i + 2)}) : NSArray::array()}}, length + 1));
    }
    objects.push_back(classNamed("NSArray"));
    return archiveOf(std::move(objects));
}

} // namespace

TEST(KeyedUnarchiver, MutableClassesComeBackAsTheirImmutableSuperclasses) {
    EXPECT_EQ(
        unarchived(archiveOf({form({{"NS.string", text("a")}}),
                              classNamed({text("NSMutableString"), text("NSString"), text("NSObject")})})),
        "s0061");
    EXPECT_EQ(unarchived(archiveOf({form({{"NS.data", NSData(std::string("a"))}}),
                                    classNamed({text("NSMutableData"), text("NSData"), text("NSObject")})})),
              "d61");
    EXPECT_EQ(unarchived(archiveOf({form({{"NS.objects", NSArray({reference(3)})}}),
                                    classNamed({text("NSMutableArray"), text("NSArray"), text("NSObject")}),
                                    text("x")})),
              "[s0078,]");
}

TEST(KeyedUnarchiver, AnErrorWithoutUserInfoHasAnEmptyOne) {
    EXPECT_EQ(unarchived(archiveOf(
                  {form({{"NSDomain", reference(3)}, {"NSCode", integer(1)}, {"NSUserInfo", reference(0)}}),
                   classNamed("NSError"), text("d")})),
              "e1s0064{}");
    EXPECT_EQ(unarchived(archiveOf({form({{"NSDomain", reference(3)}, {"NSCode", integer(1)}}),
                                    classNamed("NSError"), text("d")})),
              "e1s0064{}");
}

TEST(KeyedUnarchiver, ChainsAreReadAsDeepAsAllowed) {
    EXPECT_NE(unarchived(chain(512)), "nil");
}

TEST(KeyedUnarchiver, WhatIsNoPropertyListIsNil) {
    EXPECT_FALSE(NSKeyedUnarchiver::unarchiveObjectWithData({}));
    EXPECT_FALSE(NSKeyedUnarchiver::unarchiveObjectWithData(NSData(std::string("bplist00"))));
    EXPECT_FALSE(NSKeyedUnarchiver::unarchiveObjectWithData(bytesOf(text("a"))));
    EXPECT_FALSE(NSKeyedUnarchiver::unarchiveObjectWithData(bytesOf(NSDictionary::dictionary())));
}

TEST(KeyedUnarchiver, EveryChangedByteIsReadOrRefusedButNeverHarms) {
    const NSData whole =
        NSKeyedArchiver::archivedDataWithRootObject(error(NSDictionary{{text("a"), text("b")}}));
    std::size_t refused = 0;
    for (std::size_t at = 0; at < whole.length(); ++at) {
        for (const char flip : {'\x01', '\x10', '\x80', '\xFF'}) {
            std::string bytes(whole.bytes());
            bytes[at] = static_cast<char>(bytes[at] ^ flip);
            refused += NSKeyedUnarchiver::unarchiveObjectWithData(NSData(bytes)).isNil();
        }
    }
    EXPECT_GT(refused, whole.length());
}

TEST_P(BadArchiveOf, IsNil) {
    EXPECT_EQ(unarchived(GetParam().archive), "nil");
}

INSTANTIATE_TEST_SUITE_P(
    Damage, BadArchiveOf,
    testing::Values(
        BadCase{"OtherArchiver", changed(archiveOf({text("a")}), "$archiver", text("Other"))},
        BadCase{"OtherVersion", changed(archiveOf({text("a")}), "$version", integer(1))},
        BadCase{"TopThatIsNoDictionary", changed(archiveOf({text("a")}), "$top", text("a"))},
        BadCase{"TopWithoutRoot", changed(archiveOf({text("a")}), "$top", NSDictionary::dictionary())},
        BadCase{"RootThatIsNoReference",
                changed(archiveOf({text("a")}), "$top", NSDictionary{{text("root"), integer(1)}})},
        BadCase{"RootNil",
                changed(archiveOf({text("a")}), "$top", NSDictionary{{text("root"), reference(0)}})},
        BadCase{"RootOutOfBounds",
                changed(archiveOf({text("a")}), "$top", NSDictionary{{text("root"), reference(2)}})},
        BadCase{"ObjectsThatAreNoArray", changed(archiveOf({text("a")}), "$objects", text("a"))},
        BadCase{"NoObjects", changed(archiveOf({text("a")}), "$objects", NSArray::array())},
        BadCase{"ObjectWithoutClass", archiveOf({NSDictionary::dictionary()})},
        BadCase{"ObjectOfAnotherKind", archiveOf({NSArray::array()})},
        BadCase{"ClassOutOfBounds", archiveOf({form({}, 9)})},
        BadCase{"ClassThatIsNoDictionary", archiveOf({form({}), text("a")})},
        BadCase{"ClassWithoutNames", archiveOf({form({}), NSDictionary::dictionary()})},
        BadCase{"UnknownClass", archiveOf({form({}), classNamed("NSUnknown")})},
        BadCase{"TooManySuperclasses",
                archiveOf({form({}), classNamed(std::vector<id>(17, text("NSNull")))})},
        BadCase{"StringWithoutText", archiveOf({form({}), classNamed("NSString")})},
        BadCase{"DateWithoutTime", archiveOf({form({{"NS.time", text("a")}}), classNamed("NSDate")})},
        BadCase{"URLWithABase", archiveOf({form({{"NS.base", reference(3)}, {"NS.relative", reference(3)}}),
                                           classNamed("NSURL"), text("a")})},
        BadCase{"URLWithoutText", archiveOf({form({{"NS.base", reference(0)}, {"NS.relative", reference(0)}}),
                                             classNamed("NSURL")})},
        BadCase{"ArrayOfNil",
                archiveOf({form({{"NS.objects", NSArray({reference(0)})}}), classNamed("NSArray")})},
        BadCase{"ArrayThatHoldsItself",
                archiveOf({form({{"NS.objects", NSArray({reference(1)})}}), classNamed("NSArray")})},
        BadCase{"ArrayOfOtherThanReferences",
                archiveOf({form({{"NS.objects", NSArray({text("a")})}}), classNamed("NSArray")})},
        BadCase{"DictionaryWithMoreKeysThanValues",
                archiveOf({form({{"NS.keys", NSArray({reference(3)})}, {"NS.objects", NSArray::array()}}),
                           classNamed("NSDictionary"), text("a")})},
        BadCase{
            "DictionaryWithAnArrayAsKey",
            archiveOf({form({{"NS.keys", NSArray({reference(3)})}, {"NS.objects", NSArray({reference(4)})}}),
                       classNamed("NSDictionary"), form({{"NS.objects", NSArray::array()}}, 5), text("a"),
                       classNamed("NSArray")})},
        BadCase{"ErrorWithoutDomain", archiveOf({form({{"NSCode", integer(1)}}), classNamed("NSError")})},
        BadCase{"ErrorWithoutCode",
                archiveOf({form({{"NSDomain", reference(3)}}), classNamed("NSError"), text("d")})},
        BadCase{"ErrorWhoseUserInfoIsText",
                archiveOf(
                    {form({{"NSDomain", reference(3)}, {"NSCode", integer(1)}, {"NSUserInfo", reference(3)}}),
                     classNamed("NSError"), text("d")})},
        BadCase{"NestedTooDeep", chain(513)}, BadCase{"NestedFarTooDeep", chain(20000)},
        BadCase{"ListsSharedByManyObjects", sharedLists()}),
    [](const auto& test) { return test.param.name; });

} // namespace qrv
