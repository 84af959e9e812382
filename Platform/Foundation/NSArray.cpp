#include "Platform/Foundation/NSArray.h"

#include "Platform/Foundation/CollectionDescription.h"
#include "Platform/Foundation/DeepRelease.h"
#include "Platform/Foundation/NSException.h"

#include <algorithm>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo arrayClassInfo{"NSArray", &Object::classInfo};

class ArrayObject final : public Object, public NSCoding {
public:
    explicit ArrayObject(std::vector<id>&& elements) : elements_(std::move(elements)) {}

    ~ArrayObject() override { releaseDeep(elements_); }

    const ClassInfo& objectClass() const override { return arrayClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const ArrayObject*>(&other);
        return o && o->elements_ == elements_;
    }

    std::size_t hash() const override { return elements_.size(); }

    NSString description() const override { return describeCollection(NSArray(elements_)); }

    const std::vector<id>& elements() const { return elements_; }

private:
    std::vector<id> elements_;
};

} // namespace

NSArray::NSArray(FromVector, std::vector<id>&& elements) {
    if (std::any_of(elements.begin(), elements.end(), [](const id& e) { return e.isNil(); })) {
        throw NSException(NSInvalidArgumentException, u"attempt to insert nil object into an array");
    }
    *this = NSArray(std::make_shared<ArrayObject>(std::move(elements)));
}

NSArray::NSArray(std::initializer_list<id> elements) : NSArray(std::vector<id>(elements)) {}

const ClassInfo& NSArray::classInfo() {
    return arrayClassInfo;
}

bool NSArray::accepts(const Object& payload) {
    return typeid(payload) == typeid(ArrayObject);
}

const std::vector<id>& NSArray::elements() const {
    static const auto& none = *new std::vector<id>; // never destroyed
    return isNil() ? none : static_cast<const ArrayObject&>(*shared()).elements();
}

id NSArray::objectAtIndex(std::size_t index) const {
    if (index >= count()) {
        throw NSException(NSRangeException,
                          NSString::stringWithFormat(u"-[NSArray objectAtIndex:]: index %lu beyond bounds; "
                                                     u"count %lu",
                                                     index, count()));
    }
    return elements()[index];
}

bool NSArray::containsObject(const id& object) const {
    return std::any_of(begin(), end(), [&](const id& e) { return e.isEqual(object); });
}

NSArray NSArray::arrayByAddingObject(const id& object) const {
    std::vector<id> all = elements();
    all.push_back(object);
    return NSArray(std::move(all));
}

NSString NSArray::componentsJoinedByString(const NSString& separator) const {
    if (isNil()) return {};
    std::u16string joined;
    for (std::size_t i = 0; i < count(); ++i) {
        if (i > 0) joined.append(separator.view());
        joined.append(elements()[i].description().view());
    }
    return NSString(std::move(joined));
}

} // namespace qrv
