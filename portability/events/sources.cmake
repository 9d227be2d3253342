target_sources(portability PRIVATE)
