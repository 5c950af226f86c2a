#pragma once

class DockableWidgetContents;

/// Makes \p contents read their file again, after a question to the user if that loses changes.
void reloadWhenAllowed(DockableWidgetContents& contents);
