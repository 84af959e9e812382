#include "Platform/Foundation/NSPropertyListSerialization.h"

#include "Platform/Foundation/PropertyList/BinaryReader.h"
#include "Platform/Foundation/PropertyList/BinaryWriter.h"
#include "Platform/Foundation/PropertyList/PropertyListFailure.h"
#include "Platform/Foundation/PropertyList/XMLReader.h"
#include "Platform/Foundation/PropertyList/XMLWriter.h"

namespace qrv {

id NSPropertyListSerialization::propertyListWithData_options_format_error(const NSData& data, unsigned long,
                                                                          NSPropertyListFormat* format,
                                                                          NSError* error) {
    const bool isBinary = plist::isBinary(data);
    try {
        id root = isBinary ? plist::readBinary(data) : plist::readXML(data);
        if (format) *format = isBinary ? NSPropertyListBinaryFormat_v1_0 : NSPropertyListXMLFormat_v1_0;
        return root;
    } catch (const plist::PropertyListFailure& failure) {
        setError(error,
                 NSError::errorWithDomain_code_userInfo(
                     NSCocoaErrorDomain, NSPropertyListReadCorruptError,
                     NSDictionary{{NSString(u"NSDebugDescription"), NSString::fromUTF8(failure.what())}}));
        return {};
    }
}

id NSPropertyListSerialization::propertyListWithData(const NSData& data, NSError* error) {
    return propertyListWithData_options_format_error(data, 0, nullptr, error);
}

NSData NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(const id& plist,
                                                                                 NSPropertyListFormat format,
                                                                                 NSString* errorDescription) {
    try {
        switch (format) {
        case NSPropertyListXMLFormat_v1_0:
            return plist::writeXML(plist);
        case NSPropertyListBinaryFormat_v1_0:
            return plist::writeBinary(plist);
        }
        throw plist::PropertyListFailure("unknown format");
    } catch (const plist::PropertyListFailure& failure) {
        if (errorDescription) *errorDescription = NSString::fromUTF8(failure.what());
        return {};
    }
}

} // namespace qrv
