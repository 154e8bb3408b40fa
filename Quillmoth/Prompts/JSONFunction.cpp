#include "Quillmoth/Prompts/JSONFunction.h"

#include "Foundation/FatalError.h"
#include "Platform/Bundle.h"

#include <utility>

namespace quillmoth::jsonFunction {

std::string load(const std::string& filename, const platform::Bundle& bundle) {
    const auto url = bundle.urlForResource(filename);
    if (!url)
        fatalError("Couldn't find " + filename + " in main bundle.");
    auto bytes = bundle.read(*url);
    if (!bytes)
        fatalError("Couldn't load " + filename + " from main bundle:\n" + bytes.error().description);
    return std::move(*bytes);
}

} // namespace quillmoth::jsonFunction
