#!/usr/bin/env python3
"""Compares what quellboxctl says of itself with its manual page and with the completions for bash and zsh, in both
directions: commands, the options of each, their values, the keys of what is printed, and exit codes.

Usage: documents_test.py QUELLBOXCTL
"""
import itertools
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MANUAL_PAGE = os.path.join(ROOT, "docs", "quellboxctl.1")
BASH = os.path.join(ROOT, "packaging", "completions", "quellboxctl.bash")
ZSH = os.path.join(ROOT, "packaging", "completions", "_quellboxctl")
PROGRAM = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else ""
# Options of which the shells know values, and what each value is followed by to be accepted.
VALUES = [("list", "--sort", ""), ("list", "--match", "=x"), ("stats", "--by", ""), ("history", "--action", ""),
          ("history", "--result", "")]
# What may be an option of one letter.
LETTERS = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"


class Program:
    """What the program says of itself, and does in a folder of its own."""

    def __init__(self, folder):
        self.folder = folder
        self.archive = os.path.join(folder, "archive")
        os.mkdir(self.archive)
        with open(os.path.join(self.archive, "one.eml"), "w", encoding="ascii") as message:
            message.write("From: a@x.example\nTo: b@x.example\nSubject: One\n\ntext\n")
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE="", HOME=folder,
                                XDG_CONFIG_HOME=os.path.join(folder, "config"),
                                XDG_DATA_HOME=os.path.join(folder, "data"))

    def run(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], env=self.environment, cwd=self.folder, capture_output=True,
                              text=True, timeout=60, check=False)

    def print(self, *arguments):
        result = self.run(*arguments)
        if result.returncode != 0:
            raise AssertionError(f"{arguments} ended with {result.returncode}: {result.stderr}")
        return result.stdout

    def commands(self):
        return re.findall(r"^  ([a-z][a-z-]*)  ", self.print("--help"), re.MULTILINE)

    def options(self, command):
        """What is said of each option; those of the same line have the same text."""
        options, names = {}, []
        for line in self.print(command, "--help").splitlines():
            head = re.match(r"  (-\S+(?:, -\S+)*)(?: <[^>]*>)?(?:  +(.*))?$", line)
            if head:
                names = head.group(1).split(", ")
                options.update((name, head.group(2) or "") for name in names)
            elif line.startswith("    ") and names:
                for name in names:
                    options[name] += " " + line.strip()
            else:
                names = []
        return options

    def keys(self, *arguments):
        """The keys of the rows that a command prints."""
        rows = [json.loads(line) for line in self.print(*arguments, "--json", "--archive", self.archive).splitlines()]
        return {key for row in rows for key in row}


def plain(line):
    """A line of the manual page without its escapes, as words of a shell, and without the name of its macro."""
    for escape, text in (("\\-", "-"), ("\\|", ""), ("\\&", ""), ("\\e", "")):
        line = line.replace(escape, text)
    words = shlex.split(line.replace("'", ""), posix=True)
    return words[1:] if words and words[0].startswith(".") else words


def options_in(text):
    return set(re.findall(r"(?<![\w-])--?[A-Za-z0-9][\w-]*", text))


class ManualPage:
    """The parts of the manual page."""

    def __init__(self):
        with open(MANUAL_PAGE, encoding="utf-8") as file:
            lines = file.read().splitlines()
        self.sections = self.split(lines, ".SH ")
        self.commands = self.split(self.sections["COMMANDS"], ".SS ")

    @staticmethod
    def split(lines, macro):
        parts, part = {}, []
        for line in lines:
            if line.startswith(macro):
                part = parts.setdefault(" ".join(plain(line)), [])
            else:
                part.append(line)
        return parts

    @staticmethod
    def items(lines):
        """The items of a list: the words of each head with the text below it."""
        items = []
        for before, line in itertools.pairwise(["", *lines]):
            if before == ".TP":
                items.append((set(" ".join(plain(line)).replace(",", " ").split()), []))
            elif items and line != ".TP":
                items[-1][1].append(" ".join(plain(line)))
        return [(head, " ".join(text)) for head, text in items]

    def described(self, lines):
        """The options that are heads of items, with what is said of each."""
        return {word: text for head, text in self.items(lines) for word in head if word.startswith("-")}

    def usage(self, command):
        """The options that the lines of usage of a command name, of whatever section."""
        wanted, inside = set(), False
        for line in self.commands[command]:
            inside = (inside or line.startswith(".SY")) and line != ".YS"
            if not inside:
                continue
            words = plain(line)
            wanted |= options_in(" ".join(words))
            if "CHOICES" in words:
                wanted |= set(self.described(self.sections["CHOOSING MESSAGES"]))
            if words == ["NAMES"]:
                wanted |= set(self.described(self.sections["NAMES OF MESSAGES"]))
        return wanted

    def common(self):
        return set(self.described(self.sections["COMMON OPTIONS"])) - {"-v", "--version"}

    def columns(self, *commands):
        """The keys in the list that is headed by these commands."""
        text = "\n".join(self.sections["OUTPUT"])
        for part in text.split("\n.PP\n"):
            head, _, items = part.partition("\n.TP\n")
            if head.startswith("Columns of") and set(commands) <= set(re.findall(r"[a-z]+", head)):
                return {word for words, _ in self.items([".TP", *items.splitlines()]) for word in words}
        raise AssertionError(f"There are no columns of {commands}")


class Bash:
    """The completion for bash, asked as readline asks it."""

    SCRIPT = r"""
        source "$1"
        compopt() { :; }
        while IFS= read -r COMP_LINE; do
          IFS= read -r words
          IFS=$'\x1f' read -r -a COMP_WORDS <<<"$words"
          [[ $COMP_LINE != *' ' ]] || COMP_WORDS+=('')
          COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) COMP_POINT=${#COMP_LINE}
          _quellboxctl "$2" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"
          printf '%s\x1f' "${COMPREPLY[@]}"
          echo
        done"""

    def __init__(self, environment):
        self.environment = environment

    def complete(self, lines):
        """What may stand at the end of each line, as sets of texts."""
        asked = ""
        for line in lines:
            words = [part for word in line.split() for part in re.split("([=:]+)", word) if part]
            asked += f"{line}\n" + "\x1f".join(words) + "\n"
        answer = subprocess.run(["bash", "-c", self.SCRIPT, "bash", BASH, PROGRAM], input=asked, capture_output=True,
                                env=self.environment, text=True, timeout=120, check=True)
        if answer.stderr:
            raise AssertionError(answer.stderr)
        return [set(filter(None, line.split("\x1f"))) for line in answer.stdout.split("\n")[:-1]]


class Zsh:
    """The completion for zsh, read as a text, since not every computer has that shell."""

    def __init__(self):
        with open(ZSH, encoding="utf-8") as file:
            text = file.read().replace("\\\n", " ")
        self.arrays = {name: shlex.split(body) for name, body in
                       re.findall(r"^  (\w+)=\(\n(.*?)\n  \)$", text, re.MULTILINE | re.DOTALL)}
        self.commands = [word.split(":")[0] for word in self.arrays["commands"]]
        self.first = re.search(r"^  _arguments -C (.*)$", text, re.MULTILINE).group(1)
        self.arguments = {}
        for names, body in re.findall(r"^        ([a-z][a-z |-]*)\)(.*?);;$", text, re.MULTILINE | re.DOTALL):
            for name in names.split(" | "):
                self.arguments[name] = body.strip().removeprefix("_arguments ")

    def specifications(self, text):
        """Of each option what follows its name."""
        options = {}
        for word in shlex.split(text):
            if word.startswith("$"):
                options.update(self.specifications(" ".join(map(shlex.quote, self.arrays[word[1:]]))))
                continue
            found = re.match(r"(?:\([^)]*\))?\*?(\{[^}]*\}|-[\w-]+)(.*)$", word)
            if found:
                options.update((name, found.group(2)) for name in found.group(1).strip("{}").split(","))
        return options

    def options(self, command):
        return self.specifications(self.arguments[command])

    def values(self, command, option):
        return set(re.search(r":\(([^()]*)\)$", self.options(command)[option]).group(1).split())


class DocumentsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.box = tempfile.TemporaryDirectory()
        cls.program = Program(cls.box.name)
        cls.page = ManualPage()
        cls.bash = Bash(cls.program.environment)
        cls.zsh = Zsh()
        cls.commands = cls.program.commands()
        cls.options = {command: cls.program.options(command) for command in cls.commands}

    @classmethod
    def tearDownClass(cls):
        cls.box.cleanup()

    def test_the_program_tells_commands_and_options(self):
        self.assertGreaterEqual(len(self.commands), 12)
        for command in self.commands:
            self.assertIn("--archive", self.options[command], command)

    def test_everybody_knows_the_commands(self):
        self.assertEqual(sorted(self.page.commands.keys() - {""}), sorted(self.commands))
        self.assertEqual(self.bash.complete(["quellboxctl "])[0], set(self.commands))
        self.assertEqual(sorted(self.zsh.commands), sorted(self.commands))
        self.assertEqual(sorted(self.zsh.arguments), sorted(self.commands))

    def test_the_manual_page_has_the_options_of_each_command(self):
        for command in self.commands:
            with self.subTest(command):
                self.assertEqual(self.page.usage(command) | self.page.common(), set(self.options[command]))

    def test_the_manual_page_describes_each_option(self):
        elsewhere = {}
        for section in ("CHOOSING MESSAGES", "NAMES OF MESSAGES", "COMMON OPTIONS"):
            elsewhere.update(self.page.described(self.page.sections[section]))
        for command in self.commands:
            with self.subTest(command):
                described = set(self.page.described(self.page.commands[command]))
                self.assertEqual(described - self.page.usage(command), set())
                self.assertEqual(self.page.usage(command) - described - set(elsewhere), set())

    def test_bash_knows_the_options_of_each_command(self):
        for command in self.commands:
            with self.subTest(command):
                starts = ["--", *(f"-{letter}" for letter in LETTERS)]
                offered = self.bash.complete([f"quellboxctl {command} {start}" for start in starts])
                self.assertEqual(set().union(*offered), set(self.options[command]))

    def test_zsh_knows_the_options_of_each_command(self):
        for command in self.commands:
            with self.subTest(command):
                self.assertEqual(set(self.zsh.options(command)), set(self.options[command]))

    def test_everybody_knows_what_stands_in_the_place_of_a_command(self):
        wanted = {"-h", "--help", "-v", "--version"}
        for option in wanted:
            self.assertEqual(self.program.run(option).returncode, 0, option)
        self.assertEqual(self.bash.complete(["quellboxctl -"])[0], wanted)
        self.assertEqual(set(self.zsh.specifications(self.zsh.first)), wanted)
        self.assertLessEqual(wanted, set(self.page.described(self.page.sections["COMMON OPTIONS"])))

    def test_options_take_a_value_in_the_shells_where_they_do_in_the_program(self):
        for command in self.commands:
            text = self.program.print(command, "--help")
            with_value = set(re.findall(r"^  (--[\w-]+) <", text, re.MULTILINE))
            with self.subTest(command):
                options = self.zsh.options(command)
                self.assertEqual({name for name, rest in options.items() if rest.startswith("=")}, with_value)
                # Behind an option without a value the next option is offered.
                lines = [(name, f"quellboxctl {command} {name} --js") for name in self.options[command]]
                offered = self.bash.complete([line for _, line in lines])
                without = {name for (name, _), words in zip(lines, offered) if words == {"--json"}}
                self.assertEqual(set(self.options[command]) - without, with_value)

    def test_the_shells_know_the_values_that_the_program_takes(self):
        for command, option, follows in VALUES:
            with self.subTest(option):
                end = "=" if follows else ""
                words = set(re.findall(r"[a-z][a-z-]*", self.options[command][option]))
                taken = {word + end for word in words if self.takes(command, option, word + follows)}
                self.assertGreater(len(taken), 2)
                self.assertFalse(self.takes(command, option, "nonsense" + follows))
                for text in (f"quellboxctl {command} {option} ", f"quellboxctl {command} {option}="):
                    self.assertEqual(self.bash.complete([text])[0], taken)
                self.assertEqual(self.zsh.values(command, option), taken)
                described = {**self.page.described(self.page.sections["CHOOSING MESSAGES"]),
                             **self.page.described(self.page.commands[command])}[option]
                self.assertLessEqual({word.removesuffix("=") for word in taken},
                                     set(re.findall(r"[a-z][a-z-]*", described)))

    def takes(self, command, option, value):
        return self.program.run(command, option, value, "--archive", self.program.archive).returncode == 0

    def test_bash_offers_the_names_of_the_archive(self):
        folder = os.path.join(self.program.folder, "other")
        os.mkdir(folder)
        for name in ("alpha.eml", "alpine & more.eml", "beta.eml"):
            with open(os.path.join(folder, name), "w", encoding="ascii") as message:
                message.write("Subject: x\n\n")
        lines = [f"quellboxctl {command} {archive} al" for command in ("show", "unblock", "delete")
                 for archive in (f"--archive {folder}", f"--archive={folder}")]
        for line, offered in zip(lines, self.bash.complete(lines)):
            self.assertEqual(offered, {"alpha.eml", "alpine\\ \\&\\ more.eml"}, line)

    def test_the_manual_page_names_the_columns(self):
        self.assertEqual(self.page.columns("list", "watch"), self.program.keys("list"))
        self.assertEqual(self.page.columns("stats"), self.program.keys("stats"))
        self.program.print("delete", "--all", "--archive", self.program.archive)
        self.assertEqual(self.page.columns("history"), self.program.keys("history"))

    def test_the_manual_page_explains_the_exit_codes(self):
        said = set(re.findall(r"\b(\d) ", self.program.print("--help").split("Exit codes:")[1]))
        explained = {word for head, _ in self.page.items(self.page.sections["EXIT STATUS"]) for word in head}
        self.assertEqual(explained, said)

    def test_the_shells_understand_the_completions(self):
        subprocess.run(["bash", "-n", BASH], check=True)
        if shutil.which("zsh") is None:
            self.skipTest("There is no zsh.")
        subprocess.run(["zsh", "-n", ZSH], check=True)


if __name__ == "__main__":
    del sys.argv[1:]
    unittest.main()
