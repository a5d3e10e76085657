#include "lib/resources/sources.h"

#include <cstdlib>

namespace {

const char *variable(const std::string &name) {
    return name.empty() ? nullptr : std::getenv(name.c_str());
}

} // namespace

void RES_read_environment(const ResourceProgram &program) {
    const std::string prefix = "vyx" + program.qualifier() + ".";
    for (std::size_t i = 0; i < program.descriptors.size(); ++i) {
        const ResourceDescriptor &descriptor = program.descriptors[i];
        if (descriptor.name.empty()) continue;
        const std::string name(descriptor.name);
        for (const std::string &key : {prefix + name, std::string(descriptor.environment), "vyx" + name}) {
            const char *value = variable(key);
            if (value == nullptr) continue;
            RES_store(program, i, value);
            break;
        }
    }
}
