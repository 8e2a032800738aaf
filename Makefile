# make run    builds the program and starts it on an archive of samples
# make test   runs every check
JOBS := $(shell nproc)

.PHONY: run test
run:
	scripts/install-packages.sh run
	cmake --preset release -DQUELLBOX_TESTS=OFF -DQUELLBOX_BENCHMARKS=OFF
	cmake --build --preset release -j$(JOBS) --target quellbox quellbox_samples
	scripts/run.sh

test:
	scripts/install-packages.sh test
	scripts/check.sh
