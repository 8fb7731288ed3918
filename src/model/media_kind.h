#pragma once

namespace kestrova {

enum class MediaKind { photo, video, other };

}  // namespace kestrova
