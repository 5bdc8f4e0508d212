# SPDX-License-Identifier: Apache-2.0
"""What stands against a choice, and what a choice needs, by trying everything.

Knows a small PPD as options and rules, not as a file: every state of it can be gone through.
"""

import itertools

from constraints_model import ConstraintForest, ConstraintsEngine, KVCache

OFF = ("None", "False")


class Rule:
    """One rule with its line; an empty option stands for all but two."""

    def __init__(self, key1, option1, key2, option2, line, text):
        self.key1, self.option1 = key1, option1
        self.key2, self.option2 = key2, option2
        self.line, self.text = line, text


class Printer:
    """Options by key in file order, what is selected, and the rules."""

    def __init__(self, options, selected, rules):
        self.options, self.selected, self.rules = options, selected, rules

    def means(self, key, written, option):
        if written:
            return written == option
        return option not in OFF and option in self.options.get(key, ())

    def hits(self, pair, state):
        """The rules of this pair that bite in a state, with what they hit."""
        key, option = pair
        for rule in self.rules:
            if rule.key1 != key or not self.means(key, rule.option1, option):
                continue
            other = option if rule.key2 == key else state.get(rule.key2)
            if other is not None and \
                    self.means(rule.key2, rule.option2, other):
                yield rule, (rule.key2, other)

    def rows(self, pair):
        return [{"pair": list(hit), "line": rule.line, "rule": rule.text}
                for rule, hit in self.hits(pair, self.selected)]

    # -- why

    def blockers(self, pair):
        rows = self.rows(pair)
        for row in rows:
            row["forcedBy"] = [] if row["pair"][0] == pair[0] else \
                self.forced(row["pair"][0], (pair[0],))
        return rows

    def forced(self, key, path):
        """Why none of the key's other options can be chosen now."""
        if key in path:
            return []
        found = {}
        for option in self.options[key]:
            if option == self.selected[key]:
                continue
            rows = self.rows((key, option))
            if not rows:
                return []
            for row in rows:
                found.setdefault((row["line"], row["pair"][0]), row)
        rows = [found[place] for place in sorted(found, key=lambda p: p[0])]
        for row in rows:
            row["forcedBy"] = self.forced(row["pair"][0], path + (key,))
        return rows

    def ruled_out(self, pair):
        """What the choice would grey that doesn't grey it, once a rule."""
        own = {hit[0] for _, hit in self.hits(pair, self.selected)}
        return [{"pair": [rule.key1, self.selected[rule.key1]],
                 "line": rule.line, "rule": rule.text}
                for rule in self.rules
                if rule.key2 == pair[0] != rule.key1 and
                rule.key1 not in own and
                self.means(rule.key1, rule.option1,
                           self.selected[rule.key1]) and
                self.means(rule.key2, rule.option2, pair[1])]

    # -- fix

    def is_free(self, keys, state):
        """Whether no rule bites that has to do with these keys."""
        return not any(key in keys or hit[0] in keys
                       for key in state
                       for _, hit in self.hits((key, state[key]), state))

    def works(self, pair, changes):
        state = dict(self.selected, **changes)
        state[pair[0]] = pair[1]
        return self.is_free({pair[0], *changes}, state)

    def fewest(self, pair):
        """The fewest changes that any state needs, or None."""
        keys = [key for key in self.options if key != pair[0]]
        for count in range(len(keys) + 1):
            for chosen in itertools.combinations(keys, count):
                others = [[o for o in self.options[key]
                           if o != self.selected[key]] for key in chosen]
                for picked in itertools.product(*others):
                    if self.works(pair, dict(zip(chosen, picked))):
                        return count
        return None

    def fewest_solved(self, pair):
        """The fewest changes of all that the solver comes to, or None.

        It may be told to leave any set of keys alone, and what a solution
        doesn't need goes.
        """
        names = sorted({text for key in self.options
                        for text in (key, *self.options[key])})
        number = {name: place for place, name in enumerate(names)}
        forest, known = ConstraintForest(), set()
        for key, options in self.options.items():
            for option in options:
                for rule in self.rules:
                    self.mirror(forest, known, number, rule, (key, option))
        current = KVCache((number[key], number[option]) for key, option in
                          self.selected.items() if key != pair[0])
        keys = {number[key]: [number[o] for o in options]
                for key, options in self.options.items()}
        best = None
        others = [key for key in self.options if key != pair[0]]
        for count in range(len(others) + 1):
            for left in itertools.combinations(others, count):
                locked = KVCache((number[key], -1) for key in left)
                locked.add((number[pair[0]], -1))
                delta = KVCache([(number[pair[0]], number[pair[1]])])
                engine = ConstraintsEngine(current, forest, keys, locked)
                if not engine.solve(delta, False).conflicts.pairs:
                    changes = {names[k]: names[o] for k, o in delta.pairs
                               if names[k] != pair[0] and
                               self.selected[names[k]] != names[o]}
                    need = self.fewest_of(pair, changes)
                    best = need if best is None else min(best, need)
        return best

    def fewest_of(self, pair, changes):
        for count in range(len(changes) + 1):
            for chosen in itertools.combinations(changes, count):
                if self.works(pair, {key: changes[key] for key in chosen}):
                    return count
        raise AssertionError((pair, changes))

    def mirror(self, forest, known, number, rule, pair):
        """Adds what the rule says of a pair, in both directions."""
        if rule.key1 != pair[0] or \
                not self.means(pair[0], rule.option1, pair[1]):
            return
        for other in self.options.get(rule.key2, ()):
            if not self.means(rule.key2, rule.option2, other):
                continue
            ends = (pair, (rule.key2, other))
            for first, second in (ends, ends[::-1]):
                if (first, second) not in known:
                    known.add((first, second))
                    forest.insert(*(number[t] for t in first + second))
