#include "Platform/Foundation/NSData.h"

#include "Platform/Foundation/NSException.h"

#include <algorithm>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo dataClassInfo{"NSData", &Object::classInfo};

class DataObject final : public Object, public NSCoding {
public:
    DataObject(std::shared_ptr<const void> storage, std::string_view bytes)
        : storage_(std::move(storage)), bytes_(bytes) {}

    const ClassInfo& objectClass() const override { return dataClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const DataObject*>(&other);
        return o && o->bytes_ == bytes_;
    }

    std::size_t hash() const override { return std::hash<std::string_view>{}(bytes_.substr(0, 80)); }

    /// The length and the bytes; of long data, only those at both ends.
    NSString description() const override {
        constexpr std::size_t shown = 24;
        constexpr std::size_t end = 8;
        std::u16string hex;
        for (std::size_t i = 0; i < bytes_.size(); ++i) {
            if (bytes_.size() > shown && i == shown - end) {
                hex.append(u" ... ");
                i = bytes_.size() - end;
            }
            constexpr char16_t digits[] = u"0123456789abcdef";
            const auto byte = static_cast<unsigned char>(bytes_[i]);
            hex.append({digits[byte >> 4], digits[byte & 15]});
        }
        return NSString::stringWithFormat(u"{length = %lu, bytes = 0x%@}", bytes_.size(),
                                          NSString(std::move(hex)));
    }

    std::string_view bytes() const { return bytes_; }

    const std::shared_ptr<const void>& storage() const { return storage_; }

private:
    const std::shared_ptr<const void> storage_;
    const std::string_view bytes_;
};

} // namespace

NSData::NSData(std::string bytes) {
    auto storage = std::make_shared<const std::string>(std::move(bytes));
    const std::string_view all = *storage;
    *this = NSData(std::move(storage), all);
}

NSData::NSData(std::shared_ptr<const void> storage, std::string_view bytes)
    : NSData(std::make_shared<DataObject>(std::move(storage), bytes)) {}

const ClassInfo& NSData::classInfo() {
    return dataClassInfo;
}

bool NSData::accepts(const Object& payload) {
    return typeid(payload) == typeid(DataObject);
}

std::string_view NSData::bytes() const {
    return isNil() ? std::string_view() : static_cast<const DataObject&>(*shared()).bytes();
}

std::span<const std::uint8_t> NSData::span() const {
    const std::string_view b = bytes();
    return {reinterpret_cast<const std::uint8_t*>(b.data()), b.size()};
}

NSData NSData::subdataWithRange(NSRange range) const {
    if (range.location > length() || range.length > length() - range.location) {
        throw NSException(NSRangeException,
                          NSString::stringWithFormat(u"-[NSData subdataWithRange:]: range %@ exceeds data "
                                                     u"length %lu",
                                                     NSStringFromRange(range), length()));
    }
    if (isNil()) return {};
    const auto& object = static_cast<const DataObject&>(*shared());
    return NSData(object.storage(), object.bytes().substr(range.location, range.length));
}

bool NSData::writeToFile_atomically(const NSString& path, bool atomically) const {
    return writeToFile_options_error(path, atomically ? NSDataWritingAtomic : NSDataWritingDirect, nullptr);
}

} // namespace qrv
