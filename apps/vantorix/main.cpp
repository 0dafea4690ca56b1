#include "apps/vantorix/CommandLine.h"

int main(int argc, char** argv) { return vantorix::apps::cli::runCommandLine(argc, argv); }
