#include "bench/passes/plot.h"
#include "bench/passes/run.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

/// Follows a set of passes in virtual time, prints what came of it as a table, and with an argument draws one
/// of them into that file. Fails where the antenna was further from its target than it may be.
namespace {

int follow() {
    int broken = 0;
    std::printf("| pass | rotator | furthest from the target | allowed | travel | plain | starts | plain | "
                "beyond it |\n|---|---|--:|--:|--:|--:|--:|--:|---|\n");
    for (const passes::Pass& pass : passes::kPasses) {
        for (const passes::Rotator& rotator : passes::kRotators) {
            const passes::Result result = passes::run(pass, rotator);
            std::string reasons;
            for (const auto& [reason, seconds] : result.excused) {
                char text[64];
                std::snprintf(text, sizeof text, "%s%s %.0f s", reasons.empty() ? "" : ", ", reason.c_str(),
                              seconds);
                reasons += text;
            }
            std::printf("| %s | %s | %.2f° | %.2f° | %.0f° | %.0f° | %d | %d | %s |\n", pass.name.c_str(),
                        rotator.name.c_str(), result.furthest, result.bound, result.program.travel,
                        result.plain.travel, result.program.starts, result.plain.starts, reasons.c_str());
            broken += result.broken;
        }
    }
    if (broken > 0) std::printf("\n%d moments beyond what is allowed\n", broken);
    return broken;
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (count > 1) {
            std::ofstream file(arguments[1]);
            file << passes::plot(passes::run(passes::kPasses.front(), passes::kRotators.at(1)));
            if (!file.flush()) throw std::runtime_error("The plot cannot be written");
        }
        return follow() > 0 ? 1 : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
