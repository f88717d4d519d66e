// What the library asks of the host's user-interface toolkit.
#pragma once

/// A window of the toolkit, the owner of a dialog. The library passes it on and never looks inside; null
/// means that there is no owner.
class OS_Window;
