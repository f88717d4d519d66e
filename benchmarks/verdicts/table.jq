# The messages of the rules that hit, the rule's component looked up in a table of all versions:
#   jq -r --slurpfile machine MACHINE -f table.jq BLOCKLIST
def numbers: split(".") | map(tonumber) | . + [0, 0, 0] | .[:4];
(reduce ($machine[0].components[] | select(.version)) as $component
  ({}; .[$component.type + "\t" + $component.name] += [$component.version | numbers])) as $table
| .blocklist[]
| . as $rule
| ($table[.type + "\t" + .name] // empty) as $versions
| select(.version == null
    or (.version | numbers) as $first
       | (($rule.max_version // $rule.version) | numbers) as $last
       | any($versions[]; $first <= . and . <= $last))
| .info_message
