"""Whether what the probe prints with --json is what docs/probe.schema.json says: all commands, and how they fail."""
import copy
import json
import os
import subprocess
import sys
import unittest

import jsonschema

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "browser"))
import programs  # noqa: E402

NAME = "Network_NTAP:filer1"
VAULT = "Network_VAULT:filer1"
VOLUME = ["--volume", "nfs:filer1:/vol/home:/vol/home"]
IMAGE = ["home", "home_1767571200_C1_F1", "01/05/2026"]

# A good command line for each command, without the words of the command itself, in the order in which they run: some
# need what others leave behind. A member of an earlier document stands in braces.
COMMANDS = {
    "discover": [NAME],
    "check": [NAME],
    "server": [NAME],
    "lsus": [NAME],
    "lsu": [NAME, "home"],
    "replication": [NAME, "home"],
    "images": [NAME, "home"],
    "image show": [NAME, *IMAGE],
    "snapshots": [NAME, "home"],
    "snapshot show": [NAME, "home", "nightly.0105"],
    "rollback check": [NAME, "home", "nightly.0105", *VOLUME],
    "changes": [NAME, "projects", "weekly.1", "weekly.2"],
    "claim": [NAME, *VOLUME],
    "ioctl": [NAME, "1", "--args", "text", "--output"],
    "export create": [NAME, "home", "nightly.0105", "--host", "client1"],
    "export add": [NAME, "home", *VOLUME, "--host", "client1"],
    "export delete": [NAME, "home", "--volume", "{exported_volume}", "--host", "client1", "--yes"],
    "snapshot create": [NAME, "new.1", *VOLUME, "--target", "home"],
    "snapshot rollback": [NAME, "home", "new.1", *VOLUME, "--yes"],
    "snapshot validate": [NAME, "new.2", *VOLUME, "--target", "home"],
    "snapshot prepare": [NAME, "new.2", *VOLUME, "--target", "home"],
    "topology provision": [NAME, "new.3", *VOLUME, "--topology", "mirror", "--target", "home"],
    "snapshot import": [NAME, "new.4", *VOLUME],
    "snapshot copy": [NAME, "home", "new.1", "--target", VAULT + "/vault_home"],
    "snapshot postprocess": [NAME, "home", "new.1"],
    "snapshot diff": [NAME, "nightly.0106", *VOLUME],
    "operation wait": [NAME, "--name", "mine"],
    "operation status": [NAME, "--name", "mine"],
    "operation cancel": [NAME, "an id"],
    "snapshot delete": [NAME, "home", "before-cleanup", "--yes"],
    "image delete": [NAME, *IMAGE, "--yes"],
    "events": [NAME],
    "watch lsu": [NAME, "home", "database", "--count", "2", "--interval", "0.01"],
    "watch operation": [NAME, "--name", "mine"],
}
WITHOUT_DOCUMENTS = {"completion"}  # it prints a script
LINES = {"changes", "events", "watch lsu", "watch operation"}


def commands_of_help(words=()):
    """All commands, as the probe's own help tells them."""
    text = subprocess.run([programs.PROBE, *words, "--help"], capture_output=True, text=True, check=True).stdout
    if "Subcommands:\n" not in text:
        return [" ".join(words)]
    below = text.split("Subcommands:\n")[1].split("\n\n")[0].splitlines()
    names = [line.split()[0] for line in below if line.startswith("  ") and not line.startswith("   ")]
    return [command for name in names for command in commands_of_help((*words, name))]


class Documents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(os.environ["PROBE_SCHEMA"], encoding="utf-8") as file:
            cls.schema = json.load(file)
        jsonschema.Draft202012Validator.check_schema(cls.schema)
        # A second passes with each request and nobody is told to wait: long operations end at once.
        scenario = programs.built_in_scenario()
        scenario["time"] = "requests"
        scenario["operations"] = {"retryInterval": 0}
        cls.simulator = programs.Simulator(scenario)
        cls.run_json("snapshot create", NAME, "first", *VOLUME, "--target", "home", "--name", "mine")

    @classmethod
    def tearDownClass(cls):
        cls.simulator.stop()

    @classmethod
    def run_json(cls, command, *arguments, **settings):
        return cls.simulator.run_probe(*command.split(), *arguments, "--json", **settings)

    def validator(self, definition):
        return jsonschema.Draft202012Validator({**self.schema, "anyOf": [{"$ref": f"#/$defs/{definition}"}]})

    def documents(self, command, done):
        """What was printed, which is found to be of the command's form."""
        texts = done.stdout.splitlines() if command in LINES else [done.stdout]
        found = [json.loads(text) for text in texts]
        for document in found:
            self.assertEqual(next(iter(document)), "schema")
            problems = [(list(problem.path), problem.message, [inner.message for inner in problem.context or ()])
                        for problem in self.validator(command.replace(" ", "-")).iter_errors(document)]
            self.assertEqual(problems, [], f"{command}: {document}")
        return found

    def test_of_all_commands_are_as_the_schema_says(self):
        self.assertEqual(set(commands_of_help()) - WITHOUT_DOCUMENTS, set(COMMANDS),
                         "each command needs an example here and a definition in the schema")
        members = {}
        for command, arguments in COMMANDS.items():
            with self.subTest(command):
                done = self.run_json(command, *(argument.format(**members) for argument in arguments))
                found = self.documents(command, done)
                members.update(found[-1])
                if command != "operation cancel":  # of an operation that never was
                    self.assertEqual(done.returncode, 0, done.stderr)
                    self.assertNotIn("error", found[-1])

    def test_of_failures_are_as_the_schema_says(self):
        for command, arguments in COMMANDS.items():
            with self.subTest(command):
                arguments = [argument.replace("{exported_volume}", "nfs:filer1:/gone") for argument in arguments]
                done = self.run_json(command, *arguments, library="/nowhere/libsoapwrapper.so")
                if command == "check":  # that the library isn't there is what it finds
                    self.assertEqual(done.returncode, 6)
                    self.assertEqual(self.documents(command, done)[0]["error"]["name"], "check")
                    continue
                self.assertEqual(done.returncode, 3)
                self.assertEqual([document["error"]["name"] for document in self.documents(command, done)], ["library"])
                if command == "discover":  # it has no login that could be refused
                    done = self.run_json(command, "Network_OTHER:filer1")
                else:
                    done = self.run_json(command, *arguments, credential="wrong")
                self.assertEqual(done.returncode, 4)
                self.assertEqual([document["error"]["name"] for document in self.documents(command, done)],
                                 ["service status"])

    def test_of_lists_that_are_cut_short_are_as_the_schema_says(self):
        for command, operation in (("lsus", "listLSU"), ("changes", "listFile")):
            with self.subTest(command):
                limited = self.documents(command, self.run_json(command, *COMMANDS[command], "--limit", "1"))[-1]
                self.assertEqual((limited["complete"], limited["limited"]), (False, True))
                self.simulator.ask("POST", "/api/faults",
                                   {"operation": operation, "kind": "fault", "code": 2060012, "count": 1})
                done = self.run_json(command, *COMMANDS[command])
                failed = self.documents(command, done)[-1]
                self.assertEqual(done.returncode, 4)
                self.assertFalse(failed["complete"])
                self.assertEqual(failed["error"]["name"], "STS_EINUSE")

    def test_of_operations_that_are_only_started_are_as_the_schema_says(self):
        for snapshot, name in (("later.1", []), ("later.2", ["--name", "other"])):
            done = self.run_json("snapshot create", NAME, snapshot, *VOLUME, "--no-wait", *name)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(len(self.documents("snapshot create", done)[0]), 2)

    def test_with_a_member_that_the_schema_lacks_are_found_out(self):
        for command in ("lsus", "lsu", "events", "changes"):
            found = self.documents(command, self.run_json(command, *COMMANDS[command]))
            odd = copy.deepcopy(found[0])
            odd["surplus"] = 1
            self.assertFalse(self.validator(command.replace(" ", "-")).is_valid(odd), command)
            lacking = copy.deepcopy(found[0])
            del lacking["schema"]
            self.assertFalse(self.validator(command.replace(" ", "-")).is_valid(lacking), command)


if __name__ == "__main__":
    unittest.main()
