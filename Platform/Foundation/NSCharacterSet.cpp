#include "Platform/Foundation/NSCharacterSet.h"

#include <bitset>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo characterSetClassInfo{"NSCharacterSet", &Object::classInfo};

using Members = std::bitset<0x10000>;

class CharacterSetObject final : public Object {
public:
    explicit CharacterSetObject(const Members& members) : members_(members) {}

    const ClassInfo& objectClass() const override { return characterSetClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const CharacterSetObject*>(&other);
        return o && o->members_ == members_;
    }

    std::size_t hash() const override { return std::hash<Members>{}(members_); }

    const Members& members() const { return members_; }

private:
    const Members members_;
};

NSCharacterSet with(const NSCharacterSet& set, const NSString& characters, bool member) {
    Members members;
    if (set) members = static_cast<const CharacterSetObject&>(*set.shared()).members();
    for (const char16_t c : characters.view()) members.set(c, member);
    return NSCharacterSet(std::make_shared<CharacterSetObject>(members));
}

/// For the standard sets, which are needed until the very end of the process.
const NSCharacterSet* neverDestroyed(const NSString& characters) {
    return new NSCharacterSet(with({}, characters, true));
}

} // namespace

const ClassInfo& NSCharacterSet::classInfo() {
    return characterSetClassInfo;
}

bool NSCharacterSet::accepts(const Object& payload) {
    return typeid(payload) == typeid(CharacterSetObject);
}

NSCharacterSet NSCharacterSet::characterSetWithCharactersInString(const NSString& characters) {
    return with({}, characters, true);
}

NSCharacterSet NSCharacterSet::whitespaceAndNewlineCharacterSet() {
    static const NSCharacterSet* const set = neverDestroyed(
        u"\t\n\v\f\r "
        u"\u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029"
        u"\u202F\u205F\u3000");
    return *set;
}

NSCharacterSet NSCharacterSet::URLQueryAllowedCharacterSet() {
    static const NSCharacterSet* const set =
        neverDestroyed(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/?");
    return *set;
}

bool NSCharacterSet::characterIsMember(char16_t character) const {
    return !isNil() && static_cast<const CharacterSetObject&>(*shared()).members().test(character);
}

NSCharacterSet NSCharacterSet::adding(const NSString& characters) const {
    return with(*this, characters, true);
}

NSCharacterSet NSCharacterSet::removing(const NSString& characters) const {
    return with(*this, characters, false);
}

} // namespace qrv
