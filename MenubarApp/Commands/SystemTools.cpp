#include "MenubarApp/Commands/SystemTools.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"

#include <utility>

#include <unistd.h>

namespace menubar {

CommandContext CommandContext::ofThisProcess(SystemTools tools) {
    CommandContext context;
    context.environment = processEnvironment();
    context.home = homeDirectory(context.environment);
    context.uid = ::getuid();
    context.tools = std::move(tools);
    return context;
}

} // namespace menubar
