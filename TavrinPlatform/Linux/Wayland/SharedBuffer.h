#pragma once

#include "TavrinPlatform/Linux/Wayland/Proxies.h"

class QImage;

namespace tavrin {

/// A picture as a compositor takes it, in memory that only it holds. Null where there is none left.
ProxyPtr<wl_buffer> sharedBuffer(wl_shm* memory, const QImage& picture);

} // namespace tavrin
