#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::system {

/// A clock that can be halted and run at another speed.
class VANTORIX_CORE_EXPORT IClock {
public:
    virtual boost::posix_time::ptime getTime() = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual void pause() = 0;
    virtual void unpause() = 0;
    virtual void setSpeed(float speed) = 0;
    virtual ~IClock();
};

}  // namespace vantorix::core::system
