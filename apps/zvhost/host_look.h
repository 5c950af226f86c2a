#pragma once

/// Gives the application Qt's own style and palette on Windows. The styles' sheets leave what they don't
/// mention to the style beneath: that of Windows paints it in the system's light colours, also in a dark style.
/// Call it when the application has been made, before any window.
void useHostLook();
