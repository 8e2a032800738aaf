# make run           builds the program and starts it on an archive of samples
# make test          runs every check
# make translations  brings the files in translations/ up to date with the texts in the code
# make package       builds the Debian package
# make check-package installs it in a fresh Debian system, starts it there and removes it again; needs root
# make windows       builds the program for Windows, a portable zip and an installer, in build/windows/
# make windows-test  the same, and runs the tests of that program under Wine
# make fuzz          feeds deviant input to what reads mail and settings, SECONDS=60 for each target
# make mail-test     tries the program with real mail servers and spam filters, which it runs for that; needs root
# make soak MINUTES=60  lets the program run over a share that goes wrong, with messages, keys and clicks at random
JOBS ?= $(shell nproc)

.NOTPARALLEL:
.PHONY: run test mail-test soak fuzz translations package check-package windows windows-test
run:
	scripts/install-packages.sh run
	cmake --preset release -DQUELLBOX_TESTS=OFF -DQUELLBOX_BENCHMARKS=OFF
	cmake --build --preset release -j$(JOBS) --target quellbox quellbox_samples
	scripts/run.sh

test:
	scripts/install-packages.sh test
	scripts/check.sh

mail-test:
	scripts/mail_test.sh

soak:
	scripts/install-packages.sh test
	cmake --preset soak
	cmake --build --preset soak -j$(JOBS) --target quellbox_soak
	QT_QPA_PLATFORM=offscreen build/soak/quellbox_soak $(or $(MINUTES),10) $(SEED)

windows:
	scripts/install-packages.sh windows
	packaging/windows/build.sh

windows-test:
	scripts/install-packages.sh windows
	packaging/windows/build.sh tests
	packaging/windows/test.sh

fuzz:
	scripts/install-packages.sh fuzz
	SECONDS_PER_TARGET=$(or $(SECONDS),60) scripts/fuzz.sh

translations:
	scripts/install-packages.sh test
	cmake --preset dev
	cmake --build --preset dev --target translations

package:
	scripts/package.sh

check-package: package
	scripts/check_package.sh
