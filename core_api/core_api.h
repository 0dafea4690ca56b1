#pragma once

/// Everything of vantorix_core: events, logging, clocks and math types.
