#include "Platform/Foundation/Object.h"

#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

const ClassInfo animalInfo{"Animal", &Object::classInfo};
const ClassInfo dogInfo{"Dog", &animalInfo};

class Animal : public Object {
public:
    const ClassInfo& objectClass() const override { return animalInfo; }
};

class Dog final : public Animal {
public:
    const ClassInfo& objectClass() const override { return dogInfo; }
};

} // namespace

TEST(ClassInfo, IsSubclassOfItselfAndOfWhatItDerivesFrom) {
    EXPECT_TRUE(dogInfo.isSubclassOf(dogInfo));
    EXPECT_TRUE(dogInfo.isSubclassOf(animalInfo));
    EXPECT_TRUE(dogInfo.isSubclassOf(Object::classInfo));
    EXPECT_FALSE(animalInfo.isSubclassOf(dogInfo));
}

TEST(Id, EverythingIsDefinedOnNil) {
    const id nothing;
    EXPECT_TRUE(nothing.isNil());
    EXPECT_FALSE(nothing);
    EXPECT_EQ(nothing.objectClass(), nullptr);
    EXPECT_FALSE(nothing.isKindOfClass(Object::classInfo));
    EXPECT_EQ(nothing.hash(), 0u);
    EXPECT_TRUE(nothing.description().isNil());
    EXPECT_EQ(nothing.payload<BooleanValue>(), nullptr);
}

TEST(Id, NilIsEqualToNothingAsAMessageButToNilAsAValue) {
    const id nothing;
    EXPECT_FALSE(nothing.isEqual(nothing));
    EXPECT_FALSE(NSString(u"a").isEqual(nothing));
    EXPECT_EQ(nothing, id(nullptr));
    EXPECT_FALSE(nothing == NSString(u"a"));
}

TEST(Id, KindOfClassFollowsTheSuperclasses) {
    const id dog(std::make_shared<Dog>());
    EXPECT_TRUE(dog.isKindOfClass(animalInfo));
    EXPECT_FALSE(dog.isKindOfClass(NSString::classInfo()));
    EXPECT_EQ(dog.objectClass(), &dogInfo);
}

TEST(Id, PayloadOfOneClassIsNeverTakenForAnothers) {
    /// Says that it is a string, and has none's text.
    class Impostor final : public Object {
    public:
        const ClassInfo& objectClass() const override { return NSString::classInfo(); }
    };

    const NSNumber number = NSNumber::numberWithInteger(1);
    EXPECT_TRUE(NSString(number.shared()).isNil());
    EXPECT_TRUE(NSString(std::make_shared<Dog>()).isNil());
    EXPECT_TRUE(as<NSString>(id(std::make_shared<Impostor>())).isNil());
    EXPECT_EQ(NSNumber(number.shared()), number);
    EXPECT_TRUE(NSNumber(std::shared_ptr<const Object>()).isNil());
}

TEST(Id, AsGivesNilForAnotherKind) {
    const id number = NSNumber::numberWithInteger(1);
    EXPECT_TRUE(as<NSString>(number).isNil());
    EXPECT_EQ(as<NSNumber>(number).integerValue(), 1);
    EXPECT_TRUE(as<NSNumber>(id()).isNil());
}

TEST(Id, AnObjectWithoutEqualityOfItsOwnIsEqualToItselfOnly) {
    const id a(std::make_shared<Dog>());
    const id b(std::make_shared<Dog>());
    const id copy = a;
    EXPECT_EQ(a, copy);
    EXPECT_TRUE(a.isIdenticalTo(copy));
    EXPECT_EQ(a.hash(), copy.hash());
    EXPECT_FALSE(a == b);
}

TEST(Id, AnObjectWithoutDescriptionOfItsOwnShowsClassAndAddress) {
    const id dog(std::make_shared<Dog>());
    EXPECT_EQ(dog.description(),
              NSString::stringWithFormat(u"<Dog: %p>", static_cast<const void*>(dog.shared().get())));
}

TEST(Id, TheDescriptionOfAStringIsTheStringItself) {
    const NSString text = u"text";
    EXPECT_TRUE(text.description().isIdenticalTo(text));
}

TEST(Id, CapabilitiesAreFoundByInterface) {
    const id text = NSString(u"12");
    ASSERT_NE(text.payload<IntegerValue>(), nullptr);
    EXPECT_EQ(text.payload<IntegerValue>()->integerValue(), 12);
    EXPECT_EQ(text.payload<DoubleValue>()->doubleValue(), 12.0);
    EXPECT_TRUE(text.payload<BooleanValue>()->boolValue());
    EXPECT_NE(text.payload<NSCoding>(), nullptr);
    EXPECT_EQ(id(std::make_shared<Dog>()).payload<NSCoding>(), nullptr);
}

TEST(Class, IsAValueDescribedByItsName) {
    const Class dog(dogInfo);
    EXPECT_EQ(dog.description(), NSString(u"Dog"));
    EXPECT_EQ(dog.info(), &dogInfo);
    EXPECT_EQ(dog, Class(dogInfo));
    EXPECT_EQ(dog.hash(), Class(dogInfo).hash());
    EXPECT_FALSE(dog == Class(animalInfo));
    EXPECT_EQ(as<Class>(id(dog)).info(), &dogInfo);
}

TEST(Class, OfAValueAndOfNil) {
    EXPECT_EQ(Class::of(NSString(u"a")), Class(NSString::classInfo()));
    EXPECT_TRUE(Class::of(id()).isNil());
    EXPECT_EQ(Class().info(), nullptr);
}

} // namespace qrv
