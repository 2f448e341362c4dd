// How a job ended.
#pragma once

namespace zep::services {

// Why a job stopped; the first cause is kept. Becomes the exit status of zepctl.
enum class Failure { kNone, kRefused, kPort, kNoAnswer, kRadioError, kFile, kCancelled };

}  // namespace zep::services
