// Asks json-rules-engine which rules hit a machine:
//
//   node engine.mjs components|machine RULES MACHINE
//
// "components" runs the engine once for each component, whose name, type and version are the facts. "machine" runs it
// once, with a table of all versions as the only fact, and an operator of its own that looks a rule's component up.
import { readFileSync } from 'node:fs';
import { Engine } from 'json-rules-engine';

const [form, rulesPath, machinePath] = process.argv.slice(2);
const rules = JSON.parse(readFileSync(rulesPath, 'utf8'));
const devices = JSON.parse(readFileSync(machinePath, 'utf8')).components.filter(({ version }) => version !== undefined);

const numbers = (version) => version.split('.').map(Number);

function compare(left, right) {
  for (let part = 0; part < 4; ++part) {
    const difference = (left[part] ?? 0) - (right[part] ?? 0);
    if (difference !== 0) return difference;
  }
  return 0;
}

const hits = new Set();
async function run(engine, facts) {
  const { events } = await engine.run(facts);
  for (const { params } of events) hits.add(params.rule);
}

const engine = new Engine(rules);
if (form === 'components') {
  engine.addOperator('versionFrom', (version, first) => compare(version, first) >= 0);
  engine.addOperator('versionUpTo', (version, last) => compare(version, last) <= 0);
  for (const { type, name, version } of devices) await run(engine, { type, name, version: numbers(version) });
} else {
  const versions = new Map();
  for (const { type, name, version } of devices) {
    const key = `${type}\t${name}`;
    versions.set(key, [...(versions.get(key) ?? []), numbers(version)]);
  }
  engine.addOperator('holdAffected', (table, { key, first, last }) => (table.get(key) ?? []).some(
    (version) => first === null || (compare(version, first) >= 0 && compare(version, last) <= 0)));
  await run(engine, { versions });
}
console.log([...hits].join('\n'));
