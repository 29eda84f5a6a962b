#pragma once

#include <string_view>

namespace menubar {

/// A status file as a daemon in full swing writes it: every record and every key. Ends in "}".
inline constexpr std::string_view sampleStatus = R"({
  "version" : 3,
  "daemonPid" : 4711,
  "startedAt" : "2025-03-04T08:00:00Z",
  "at" : "2025-03-04T10:15:30.123Z",
  "stoppedAt" : null,
  "intervalMs" : 30000,
  "config" : {
    "warnContextPct" : 60,
    "criticalContextPct" : 80.5,
    "cacheMinContextPct" : 4e1,
    "cacheLeadMs" : 300000,
    "messageAgents" : true,
    "dryRun" : false,
    "onCritical" : ["notify", "inject"],
    "onCacheExpiry" : [],
    "settings" : {
      "warn-context-pct" : 60,
      "labels" : ["a\/b", "caf\u00e9 \ud83d\ude00", null],
      "nested" : {"deep" : [1, -2.5e-3, {"x" : true}], "empty" : {}}
    }
  },
  "configFile" : {
    "path" : "/Users/a/.config/ostrel/config.json",
    "loadedAt" : "2025-03-04T08:00:01+01:00",
    "changedSinceLoad" : true
  },
  "configSources" : {"warn-context-pct" : "cli", "dry-run" : "file", "poll-interval" : "default", "new" : "remote"},
  "configError" : {
    "message" : "unexpected \"}\" in line 3",
    "path" : "/Users/a/.config/ostrel/config.json",
    "at" : "2025-03-04T10:00:00Z"
  },
  "sessions" : [
    {
      "provider" : "claude",
      "modelProvider" : "anthropic",
      "parentSessionId" : "0b0f4a52-52d1-4d8d-9f2c-7a3c1f0e9d11",
      "sessionId" : "5f4dcc3b-5aa7-45d6-8a11-1d8327deb882",
      "shortId" : "5f4dcc3b",
      "cwd" : "/Users/a/src/größe",
      "dirName" : "größe",
      "model" : "opus",
      "contextTokens" : 145000,
      "contextWindow" : 200000,
      "contextPct" : 72.5,
      "contextObservedAt" : "2025-03-04T10:15:29.5Z",
      "contextSource" : "reported",
      "level" : "warn",
      "lifecycle" : "needsInput",
      "source" : "store",
      "lastActivityAt" : "2025-03-04T10:15:00Z",
      "cacheExpiresAt" : "2025-03-04T10:20:00.000001Z",
      "cacheTtlMs" : 300000,
      "surfaceId" : "surface:1",
      "workspaceId" : "workspace:2",
      "currentForSurface" : true,
      "handoff" : {
        "path" : "/Users/a/src/größe/HANDOFF.md",
        "writtenAt" : "2025-03-04T10:10:00-05:30",
        "location" : "repo"
      },
      "capabilities" : {"message" : false, "reason" : "no surface"},
      "addedByALaterVersion" : {"kept" : [false, "\t"]}
    },
    {}
  ],
  "providerFailures" : [{"provider" : "codex", "reason" : "permission denied"}],
  "events" : [
    {
      "at" : "2025-03-04T10:14:00Z",
      "provider" : "claude",
      "sessionId" : "5f4dcc3b-5aa7-45d6-8a11-1d8327deb882",
      "shortId" : "5f4dcc3b",
      "dirName" : "größe",
      "kind" : "handoff",
      "level" : "info",
      "text" : "wrote\na hand-off",
      "dryRun" : false
    }
  ]
})";

} // namespace menubar
