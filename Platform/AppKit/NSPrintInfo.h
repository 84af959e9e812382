#pragma once

// Print settings: paper, margins, pagination and destination. A value; copies are independent.
//
//     NSMutableDictionary settings = NSPrintInfo::sharedPrintInfo().dictionary().mutableCopy();
//     settings.setObject_forKey(NSString(NSPrintSaveJob), NSString(NSPrintJobDisposition));
//     NSPrintInfo info(settings);
//     info.setTopMargin(36);

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSURL.h"

namespace qrv {

/// What happens to contents that are larger than the page.
enum NSPrintingPaginationMode : unsigned long {
    NSPrintingPaginationModeAutomatic = 0, // broken into pages
    NSPrintingPaginationModeFit = 1,       // scaled to the page
    NSPrintingPaginationModeClip = 2,      // cut off
};

// Keys of the dictionary.

inline constexpr char16_t NSPrintPaperSize[] = u"NSPaperSize"; // NSString, as of NSStringFromSize, in points
inline constexpr char16_t NSPrintTopMargin[] = u"NSTopMargin"; // NSNumber, in points, as the next three
inline constexpr char16_t NSPrintBottomMargin[] = u"NSBottomMargin";
inline constexpr char16_t NSPrintLeftMargin[] = u"NSLeftMargin";
inline constexpr char16_t NSPrintRightMargin[] = u"NSRightMargin";
inline constexpr char16_t NSPrintHorizontalPagination[] = u"NSHorizontalPagination"; // NSNumber, a mode
inline constexpr char16_t NSPrintVerticalPagination[] = u"NSVerticalPagination";
inline constexpr char16_t NSPrintHorizontallyCentered[] = u"NSHorizontallyCentered"; // NSNumber, a boolean
inline constexpr char16_t NSPrintVerticallyCentered[] = u"NSVerticallyCentered";
inline constexpr char16_t NSPrintJobDisposition[] = u"NSPrintJobDisposition"; // NSString, a disposition
inline constexpr char16_t NSPrintJobSavingURL[] = u"NSJobSavingURL";          // NSURL of a file

// Dispositions.

inline constexpr char16_t NSPrintSpoolJob[] = u"NSPrintSpoolJob";
inline constexpr char16_t NSPrintSaveJob[] = u"NSPrintSaveJob";

class NSPrintInfo {
public:
    // + sharedPrintInfo
    /// The process's immutable default settings: this machine's default paper (read once), margins of one
    /// inch at the sides and 1.25 inches above and below, contents centred, clipped horizontally and
    /// paginated vertically, for a printer.
    static const NSPrintInfo& sharedPrintInfo();

    // - initWithDictionary:
    /// Missing entries, or a nil dictionary, take the shared settings' values. An entry of the wrong kind
    /// counts as zero, no or nil; a paper size of the wrong kind as the shared settings' size.
    explicit NSPrintInfo(const NSDictionary& dictionary);

    // - dictionary
    /// All settings by key, and the further entries of the dictionary that they were made from.
    NSDictionary dictionary() const { return settings_.copy(); }

    // - paperSize
    /// In points.
    NSSize paperSize() const;

    // - topMargin
    double topMargin() const { return number(NSPrintTopMargin); }

    // - bottomMargin
    double bottomMargin() const { return number(NSPrintBottomMargin); }

    // - leftMargin
    double leftMargin() const { return number(NSPrintLeftMargin); }

    // - rightMargin
    double rightMargin() const { return number(NSPrintRightMargin); }

    // - horizontalPagination
    NSPrintingPaginationMode horizontalPagination() const { return mode(NSPrintHorizontalPagination); }

    // - verticalPagination
    NSPrintingPaginationMode verticalPagination() const { return mode(NSPrintVerticalPagination); }

    // - isHorizontallyCentered
    bool isHorizontallyCentered() const { return number(NSPrintHorizontallyCentered) != 0; }

    // - isVerticallyCentered
    bool isVerticallyCentered() const { return number(NSPrintVerticallyCentered) != 0; }

    // - jobDisposition
    NSString jobDisposition() const;
    /// The file that the job is saved to; nil if none is set.
    NSURL jobSavingURL() const;

    // - setTopMargin:
    void setTopMargin(double points) { setNumber(NSPrintTopMargin, points); }

    // - setBottomMargin:
    void setBottomMargin(double points) { setNumber(NSPrintBottomMargin, points); }

    // - setLeftMargin:
    void setLeftMargin(double points) { setNumber(NSPrintLeftMargin, points); }

    // - setRightMargin:
    void setRightMargin(double points) { setNumber(NSPrintRightMargin, points); }

    // - setHorizontalPagination:
    void setHorizontalPagination(NSPrintingPaginationMode mode);
    // - setVerticalPagination:
    void setVerticalPagination(NSPrintingPaginationMode mode);
    // - setHorizontallyCentered:
    void setHorizontallyCentered(bool centred);
    // - setVerticallyCentered:
    void setVerticallyCentered(bool centred);

private:
    double number(const char16_t* key) const;
    NSPrintingPaginationMode mode(const char16_t* key) const;
    void setNumber(const char16_t* key, double value);

    /// The only place where the settings are stored.
    NSMutableDictionary settings_;
};

} // namespace qrv
