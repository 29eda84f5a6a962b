#include "demo/ConfigSchema.h"

namespace menubar::demo {

namespace {

constexpr std::string_view document = R"json({
  "$schema": "https://json-schema.org/draft/2020-12/schema",
  "title": "ostrel config",
  "type": "object",
  "additionalProperties": false,
  "x-settings-version": 3,
  "properties": {
    "warn-context": {"type": "integer", "default": 70, "minimum": 1, "maximum": 99},
    "critical-context": {"type": "integer", "default": 90, "minimum": 2, "maximum": 100},
    "cache-min-context": {"type": "integer", "default": 30, "minimum": 0, "maximum": 100},
    "token-price": {"type": "number", "default": 3.5, "minimum": 0},
    "poll-interval": {"type": "string", "default": "1s", "pattern": "^[0-9]+(ms|s|m|h)$"},
    "idle-after": {"type": "string", "default": "5m", "pattern": "^[0-9]+(ms|s|m|h)$"},
    "stale-after": {"type": "string", "default": "1h", "pattern": "^[0-9]+(ms|s|m|h)$"},
    "max-sessions": {"type": "integer", "default": 50, "minimum": 1, "maximum": 500},
    "providers": {"type": "array", "default": ["acme", "borealis", "quill"],
                  "items": {"enum": ["acme", "borealis", "quill", "zephyr"]}},
    "ignored-directories": {"type": "array", "default": [], "items": {"pattern": "^(/|~/)"}},
    "scan-terminals": {"type": "boolean", "default": true},
    "cache-warn": {"type": "boolean", "default": true},
    "cache-warn-before": {"type": "string", "default": "60s", "pattern": "^[0-9]+(ms|s|m|h)$"},
    "on-cache-expiry": {"type": "array", "default": ["notify"]},
    "on-warn": {"type": "array", "default": ["notify"]},
    "on-critical": {"type": "array", "default": ["notify", "handoff"]},
    "dry-run": {"type": "boolean", "default": false},
    "message-agents": {"type": "boolean", "default": true},
    "agent-message": {"type": "string", "default": "[ostrel] Your context is nearly full: write a hand-off now."},
    "handoff-request": {"type": "string",
                        "default": "Write down what the next agent must know:\n- the goal\n- what is done\n- what is next"},
    "cooldown": {"type": "string", "default": "10m", "pattern": "^[0-9]+(ms|s|m|h)$"},
    "max-messages-per-hour": {"type": "integer", "default": 6, "minimum": 0},
    "handoff-location": {"type": "string", "default": "scratchpad", "enum": ["repo", "scratchpad", "external"]},
    "handoff-directory": {"type": "string"},
    "handoff-template": {"type": "string"},
    "handoff-name": {"type": "string", "default": "{session}.md"},
    "handoffs-kept": {"type": "integer", "default": 100, "minimum": 1},
    "notify": {"type": "boolean", "default": true},
    "notify-sound": {"type": "string", "default": "none"},
    "quiet-hours": {"type": "object"},
    "log-level": {"type": "string", "default": "info", "enum": ["error", "warn", "info", "debug"]},
    "log-file": {"type": "string"},
    "event-history": {"type": "integer", "default": 20, "minimum": 1, "maximum": 1000}
  },
  "x-groups": [
    {"id": "thresholds", "title": "Thresholds", "settings": [
      {"name": "warn-context", "group": "thresholds", "control": "percent",
       "help": "Context use from which a session is marked orange."},
      {"name": "critical-context", "group": "thresholds", "control": "percent",
       "help": "Context use from which a session is marked red. Must be above warn-context."},
      {"name": "cache-min-context", "group": "thresholds", "control": "percent",
       "help": "Below this context use an expiring prompt cache is not worth a word."},
      {"name": "token-price", "group": "thresholds", "control": "number", "integer": false, "restart": false,
       "help": "Price of a million input tokens, for estimates."}
    ]},
    {"id": "polling", "title": "Polling", "settings": [
      {"name": "poll-interval", "group": "polling", "control": "duration", "help": "Time between two polls."},
      {"name": "idle-after", "group": "polling", "control": "duration",
       "help": "A session without activity for this long is idle."},
      {"name": "stale-after", "group": "polling", "control": "duration",
       "help": "A session without activity for this long is no longer listed. Must be above poll-interval."},
      {"name": "max-sessions", "group": "polling", "control": "number", "max": 200,
       "help": "Further sessions are not watched."},
      {"name": "providers", "group": "polling", "control": "enum", "multiple": true,
       "help": "The agent tools whose sessions are watched."},
      {"name": "ignored-directories", "group": "polling", "control": "list",
       "help": "Sessions below these directories are not watched."},
      {"name": "scan-terminals", "group": "polling", "control": "toggle",
       "help": "Look for sessions that no store lists."}
    ]},
    {"id": "cache", "title": "Prompt cache", "settings": [
      {"name": "cache-warn", "group": "cache", "control": "toggle", "help": "Tell when a prompt cache is about to expire."},
      {"name": "cache-warn-before", "group": "cache", "control": "duration", "help": "How long before."},
      {"name": "on-cache-expiry", "group": "cache", "control": "enum", "multiple": true,
       "values": ["notify", "inject"], "help": "What to do then."}
    ]},
    {"id": "actions", "title": "Actions", "settings": [
      {"name": "on-warn", "group": "actions", "control": "enum", "multiple": true,
       "values": ["notify", "inject", "handoff"], "help": "What to do when a session turns orange."},
      {"name": "on-critical", "group": "actions", "control": "enum", "multiple": true,
       "values": ["notify", "inject", "handoff"], "help": "What to do when a session turns red."},
      {"name": "dry-run", "group": "actions", "control": "toggle", "restart": false,
       "help": "Record what would be done, and do nothing."},
      {"name": "message-agents", "group": "actions", "control": "toggle", "help": "Allow messages to agents at all."},
      {"name": "agent-message", "group": "actions", "control": "text", "requiredPrefix": "[ostrel]",
       "help": "What an agent is told."},
      {"name": "handoff-request", "group": "actions", "control": "text", "multiline": true,
       "help": "How an agent is asked for a hand-off document."},
      {"name": "cooldown", "group": "actions", "control": "duration",
       "help": "No second message to a session within this time."},
      {"name": "max-messages-per-hour", "group": "actions", "control": "number", "min": 0}
    ]},
    {"id": "handoffs", "title": "Hand-offs", "settings": [
      {"name": "handoff-location", "group": "handoffs", "control": "enum",
       "help": "Where agents write hand-off documents. For external, handoff-directory says where."},
      {"name": "handoff-directory", "group": "handoffs", "control": "path"},
      {"name": "handoff-template", "group": "handoffs", "control": "path", "help": "A file that hand-offs begin with."},
      {"name": "handoff-name", "group": "handoffs", "control": "text"},
      {"name": "handoffs-kept", "group": "handoffs", "control": "number", "help": "Older ones are removed."}
    ]},
    {"id": "notifications", "title": "Notifications", "settings": [
      {"name": "notify", "group": "notifications", "control": "toggle"},
      {"name": "notify-sound", "group": "notifications", "control": "enum", "restart": false,
       "values": ["none", "chime", "bell"]},
      {"name": "quiet-hours", "group": "notifications", "control": "time-range",
       "help": "No notifications within, for example {\"from\": \"22:00\", \"to\": \"07:00\"}."}
    ]},
    {"id": "logging", "settings": [
      {"name": "log-level", "group": "logging", "control": "enum"},
      {"name": "log-file", "group": "logging", "control": "path"},
      {"name": "event-history", "group": "logging", "control": "number", "help": "Recent events that are kept."}
    ]}
  ]
}
)json";

} // namespace

std::string_view configSchemaDocument() {
    return document;
}

const SettingsSchema& configSchema() {
    static const SettingsSchema schema = SettingsSchema::decode(document).value_or(SettingsSchema{});
    return schema;
}

} // namespace menubar::demo
