-- Writes the report of this machine into the present directory.
if SystemCompatibilityReport.CreateReport('report.txt') then
  print('report.txt is written')
end
