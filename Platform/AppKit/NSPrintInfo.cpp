#include "Platform/AppKit/NSPrintInfo.h"

#include "Platform/AppKit/DefaultPaper.h"
#include "Platform/Foundation/NSNumber.h"

namespace qrv {

namespace {

const NSDictionary& sharedSettings() {
    static const NSDictionary settings{
        {NSString(NSPrintPaperSize), NSStringFromSize(defaultPaperSize())},
        {NSString(NSPrintTopMargin), NSNumber::numberWithDouble(90)},
        {NSString(NSPrintBottomMargin), NSNumber::numberWithDouble(90)},
        {NSString(NSPrintLeftMargin), NSNumber::numberWithDouble(72)},
        {NSString(NSPrintRightMargin), NSNumber::numberWithDouble(72)},
        {NSString(NSPrintHorizontalPagination), NSNumber::numberWithInteger(NSPrintingPaginationModeClip)},
        {NSString(NSPrintVerticalPagination), NSNumber::numberWithInteger(NSPrintingPaginationModeAutomatic)},
        {NSString(NSPrintHorizontallyCentered), NSNumber::numberWithBool(true)},
        {NSString(NSPrintVerticallyCentered), NSNumber::numberWithBool(true)},
        {NSString(NSPrintJobDisposition), NSString(NSPrintSpoolJob)},
    };
    return settings;
}

NSSize paperSizeIn(const id& value) {
    return NSSizeFromString(as<NSString>(value));
}

} // namespace

const NSPrintInfo& NSPrintInfo::sharedPrintInfo() {
    static const NSPrintInfo shared{NSDictionary()};
    return shared;
}

NSPrintInfo::NSPrintInfo(const NSDictionary& dictionary) : settings_(sharedSettings().mutableCopy()) {
    settings_.addEntriesFromDictionary(dictionary);
}

NSSize NSPrintInfo::paperSize() const {
    const NSSize own = paperSizeIn(settings_.objectForKey(NSString(NSPrintPaperSize)));
    const bool isUsable = !NSRect{{}, own}.isEmpty();
    return isUsable ? own : paperSizeIn(sharedSettings().objectForKey(NSString(NSPrintPaperSize)));
}

NSString NSPrintInfo::jobDisposition() const {
    return as<NSString>(settings_.objectForKey(NSString(NSPrintJobDisposition)));
}

NSURL NSPrintInfo::jobSavingURL() const {
    return as<NSURL>(settings_.objectForKey(NSString(NSPrintJobSavingURL)));
}

void NSPrintInfo::setHorizontalPagination(NSPrintingPaginationMode mode) {
    settings_.setObject_forKey(NSNumber::numberWithInteger(mode), NSString(NSPrintHorizontalPagination));
}

void NSPrintInfo::setVerticalPagination(NSPrintingPaginationMode mode) {
    settings_.setObject_forKey(NSNumber::numberWithInteger(mode), NSString(NSPrintVerticalPagination));
}

void NSPrintInfo::setHorizontallyCentered(bool centred) {
    settings_.setObject_forKey(NSNumber::numberWithBool(centred), NSString(NSPrintHorizontallyCentered));
}

void NSPrintInfo::setVerticallyCentered(bool centred) {
    settings_.setObject_forKey(NSNumber::numberWithBool(centred), NSString(NSPrintVerticallyCentered));
}

double NSPrintInfo::number(const char16_t* key) const {
    return as<NSNumber>(settings_.objectForKey(NSString(key))).doubleValue();
}

/// A number that is not a mode counts as zero.
NSPrintingPaginationMode NSPrintInfo::mode(const char16_t* key) const {
    const long long value = as<NSNumber>(settings_.objectForKey(NSString(key))).integerValue();
    for (const auto known : {NSPrintingPaginationModeFit, NSPrintingPaginationModeClip}) {
        if (value == static_cast<long long>(known)) return known;
    }
    return NSPrintingPaginationModeAutomatic;
}

void NSPrintInfo::setNumber(const char16_t* key, double value) {
    settings_.setObject_forKey(NSNumber::numberWithDouble(value), NSString(key));
}

} // namespace qrv
