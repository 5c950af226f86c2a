#pragma once

class DockableWidgetContents;

/// Has \p contents read their file again. If that loses changes, the user is asked first.
void reloadWhenAllowed(DockableWidgetContents& contents);
