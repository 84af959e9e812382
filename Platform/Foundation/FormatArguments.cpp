#include "Platform/Foundation/FormatArguments.h"

#include <list>
#include <string>
#include <vector>

namespace qrv {

struct FormatArguments::Storage {
    std::vector<FormatArgument> arguments;
    // Lists, since their elements stay in place.
    std::list<id> objects;
    std::list<std::string> bytes;
    std::list<std::u16string> units;
    std::list<long double> longReals;
};

std::shared_ptr<const FormatArguments::Storage> FormatArguments::copied(FormatArgumentSpan arguments) {
    const auto storage = std::make_shared<Storage>();
    for (FormatArgument argument : arguments) {
        using Kind = FormatArgument::Kind;
        if (argument.kind == Kind::object && argument.object)
            argument.object = &storage->objects.emplace_back(*argument.object);
        else if (argument.kind == Kind::bytes && argument.bytes)
            argument.bytes = storage->bytes.emplace_back(argument.bytes).c_str();
        else if (argument.kind == Kind::units && argument.units)
            argument.units = storage->units.emplace_back(argument.units).c_str();
        else if (argument.kind == Kind::longReal)
            argument.longReal = &storage->longReals.emplace_back(*argument.longReal);
        storage->arguments.push_back(argument);
    }
    return storage;
}

FormatArguments::operator FormatArgumentSpan() const {
    return storage_->arguments;
}

} // namespace qrv
