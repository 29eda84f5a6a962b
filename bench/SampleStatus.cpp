#include "bench/SampleStatus.h"

namespace menubar::bench {

namespace {

std::string session(int index) {
    const std::string n = std::to_string(index);
    std::string out = R"({"provider":"acme","modelProvider":"example","sessionId":"5f0c2a1e-8d7b-4c33-9a10-)" + n +
                      R"(","shortId":"s)" + n + R"(","cwd":"/Users/ann/projects/service-)" + n +
                      R"(","dirName":"service-)" + n + R"(","model":"claude-model-4","contextTokens":)" +
                      std::to_string(40000 + index % 100000) + R"(,"contextWindow":200000,"contextPct":)" +
                      std::to_string(index % 100) + ".5" +
                      R"(,"contextObservedAt":"2025-03-04T14:02:57.123Z","contextSource":"reported","level":")" +
                      (index % 7 == 0   ? "critical"
                       : index % 3 == 0 ? "warn"
                                        : "ok") +
                      R"(","lifecycle":"running","source":"store","lastActivityAt":"2025-03-04T14:02:50Z",)" +
                      R"("cacheExpiresAt":"2025-03-04T14:07:00Z","cacheTtlMs":300000,"surfaceId":"surface-)" + n +
                      R"(","workspaceId":"workspace-)" + n +
                      R"(","currentForSurface":true,"capabilities":{"message":true,"reason":"said \"ready\""})";
    if (index % 4 == 0) {
        out += R"(,"handoff":{"path":"/Users/ann/projects/service-)" + n +
               R"(/HANDOFF.md","writtenAt":"2025-03-04T13:50:00Z","location":"repo"})";
    }
    return out + "}";
}

std::string event(int index) {
    return R"({"at":"2025-03-04T14:01:)" + std::to_string(10 + index % 50) +
           R"(Z","provider":"acme","shortId":"s1","dirName":"service-1","kind":"notify","level":"warn",)" +
           R"("text":"context at 81% of the window, a hand-off is due soon; the agent was told so"})";
}

} // namespace

std::string sampleStatus(int sessions) {
    std::string out = R"({"version":1,"daemonPid":4242,"startedAt":"2025-03-04T09:00:00Z",)"
                      R"("at":"2025-03-04T14:02:57Z","intervalMs":30000,"config":{"warnContextPct":70,)"
                      R"("criticalContextPct":90,"cacheMinContextPct":20,"cacheLeadMs":60000,"messageAgents":true,)"
                      R"("dryRun":false,"onCritical":["notify"],"onCacheExpiry":["notify","handoff"],)"
                      R"("settings":{"warn-context":70,"critical-context":90,"poll-interval":"30s"}},)"
                      R"("configFile":{"path":"/Users/ann/.config/ostrel/config.json",)"
                      R"("loadedAt":"2025-03-04T09:00:00Z","changedSinceLoad":false},)"
                      R"("configSources":{"warn-context":"file","critical-context":"default"},"sessions":[)";
    for (int i = 0; i < sessions; ++i) {
        out += (i == 0 ? "" : ",") + session(i);
    }
    out += R"(],"providerFailures":[],"events":[)";
    for (int i = 0; i < 20; ++i) {
        out += (i == 0 ? "" : ",") + event(i);
    }
    return out + "]}";
}

} // namespace menubar::bench
