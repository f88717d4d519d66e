# The messages of the rules that hit, every rule compared with every component:
#   jq -r --slurpfile machine MACHINE -f each-component.jq BLOCKLIST
def numbers: split(".") | map(tonumber) | . + [0, 0, 0] | .[:4];
.blocklist[]
| . as $rule
| select(any($machine[0].components[];
    .type == $rule.type and .name == $rule.name
    and ($rule.version == null
         or (.version | numbers) as $version
            | ($rule.version | numbers) <= $version
              and $version <= (($rule.max_version // $rule.version) | numbers))))
| .info_message
