#pragma once

#include "ctl/command.h"

// What the commands do; the table tells what each is for.

namespace kalde2 {

ExitStatus RunPorts(CommandContext& context);
ExitStatus RunInfo(CommandContext& context);

ExitStatus RunList(CommandContext& context);
ExitStatus RunGet(CommandContext& context);
ExitStatus RunSet(CommandContext& context);

ExitStatus RunRead(CommandContext& context);
ExitStatus RunWrite(CommandContext& context);
ExitStatus RunCompare(CommandContext& context);
ExitStatus RunResolutions(CommandContext& context);

ExitStatus RunAutoset(CommandContext& context);
ExitStatus RunFade(CommandContext& context);
ExitStatus RunStore(CommandContext& context);
ExitStatus RunReset(CommandContext& context);
ExitStatus RunWatch(CommandContext& context);
ExitStatus RunTrace(CommandContext& context);

}  // namespace kalde2
