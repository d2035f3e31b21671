// Any text from the dongle: the judge of a reply, the word and block parsers behind "/MRC", the
// line collector of the unsolicited traffic and the "/SRC" parser.

#include "fuzz_text.h"
#include "link/hlk_reply.h"
#include "link/hlk_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string reply = zv::fuzz::text(data, size);
    for (const int segments : { 1, 2, 3 })
        (void)zv::hlk::judgeReply(reply, segments == 1 ? "/MTC" : "", segments);
    (void)zv::hlk::isStuckBus(reply);
    (void)zv::hlk::parseWordReply(reply);
    if (const auto block = zv::hlk::parseBlockReply(reply); block && block->empty())
        std::abort(); // a block of length 0 is a parse failure
    zv::hlk::LineCollector lines;
    for (const char c : reply)
        if (const auto line = lines.feed(c))
            if (const auto message = zv::hlk::parseSrcLine(*line))
                (void)message->computedPec();
    return 0;
}
